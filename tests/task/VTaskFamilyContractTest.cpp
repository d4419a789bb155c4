// The part of the task contract that every family keeps, run against each of
// the five families and the test double, and reached both by name and
// through the positions of the table of operations that host programs use.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"
#include "helpers/TaskRun.h"
#include "task/EchoTask.h"
#include "vagent/VFileTask.h"
#include "vagent/VGroupTask.h"
#include "vagent/VPrinterTask.h"
#include "vagent/VSessionTask.h"
#include "vagent/VTask.h"
#include "vagent/VUserTask.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::EchoTask;
using vagent::test::ListBlock;
using vagent::test::LogCapture;
using vagent::test::RunDoTask;
using vagent::test::TaskAnswer;

namespace {

// Member functions of the 32-bit Windows build take `this` in a register of
// their own; elsewhere it is the first argument. GCC, pedantic, warns that
// the convention is meant for members: these pointers are members' entries
// called by hand, which is the point here.
#if defined(_WIN32) && defined(__i386__)
#define VAGENT_MEMBER_CALL __attribute__((thiscall))
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wattributes"
#else
#define VAGENT_MEMBER_CALL
#endif

using SetRequestEntry = int(VAGENT_MEMBER_CALL*)(VTask*, const TaskRequest*);
using Result2StructEntry = int(VAGENT_MEMBER_CALL*)(VTask*, const std::uint8_t*, std::uint32_t,
                                                    void*);
using DoTaskEntry = int(VAGENT_MEMBER_CALL*)(VTask*, std::uint8_t**, std::uint32_t*);

#if defined(_WIN32) && defined(__i386__)
#pragma GCC diagnostic pop
#endif

// The entry at a position of the object's table of operations.
template <class Entry>
Entry TableEntry(VTask& task, std::size_t position) {
    const void* const* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&task), sizeof table);
    Entry entry = nullptr;
    std::memcpy(&entry, &table[position], sizeof entry);
    return entry;
}

struct UserFamily {
    using Task = VUserTask;
    static constexpr std::uint32_t kServedId = 2;
    static constexpr std::uint32_t kForeignId = 14;
    // The user family checks for a request before its outputs and logs
    // nothing.
    static std::vector<std::string> NullOutputTexts() { return {}; }
};

struct GroupFamily {
    using Task = VGroupTask;
    static constexpr std::uint32_t kServedId = 14;
    static constexpr std::uint32_t kForeignId = 1;
    static std::vector<std::string> NullOutputTexts() { return {"DoTask : Parameter Error"}; }
};

struct SessionFamily {
    using Task = VSessionTask;
    static constexpr std::uint32_t kServedId = 36;
    static constexpr std::uint32_t kForeignId = 27;
    static std::vector<std::string> NullOutputTexts() { return {"DoTask : Parameter Error"}; }
};

struct PrinterFamily {
    using Task = VPrinterTask;
    static constexpr std::uint32_t kServedId = 27;
    static constexpr std::uint32_t kForeignId = 26;
    static std::vector<std::string> NullOutputTexts() { return {"DoTask : Parameter Error"}; }
};

struct FileFamily {
    using Task = VFileTask;
    static constexpr std::uint32_t kServedId = 28;
    static constexpr std::uint32_t kForeignId = 1;
    static std::vector<std::string> NullOutputTexts() { return {"DoTask : Paramter Error"}; }
};

struct EchoFamily {
    using Task = EchoTask;
    static constexpr std::uint32_t kServedId = EchoTask::kReverse;
    static constexpr std::uint32_t kForeignId = 3;
    static std::vector<std::string> NullOutputTexts() { return {"DoTask : Parameter Error"}; }
};

// A request record as the agent service fills it from a received block.
TaskRequest RequestFor(std::vector<std::uint8_t>& block, std::uintptr_t connection) {
    TaskRequest request;
    request.reserved0 = 11;
    request.length = static_cast<std::uint32_t>(block.size());
    request.data = block.data();
    request.reserved3 = 33;
    request.reserved4 = 44;
    request.connection = connection;
    return request;
}

template <class Family>
class VTaskFamily : public ::testing::Test {
protected:
    using Task = typename Family::Task;
};

using Families =
    ::testing::Types<UserFamily, GroupFamily, SessionFamily, PrinterFamily, FileFamily, EchoFamily>;
TYPED_TEST_SUITE(VTaskFamily, Families);

}  // namespace

TYPED_TEST(VTaskFamily, StartsWithoutRequestAndWithErrorCodeZero) {
    typename TestFixture::Task task(TypeParam::kServedId);
    EXPECT_EQ(task.GetRequest(), nullptr);
    EXPECT_EQ(task.GetErrorCode(), 0u);
    EXPECT_EQ(task.GetTaskId(), TypeParam::kServedId);
}

TYPED_TEST(VTaskFamily, SetRequestCopiesAllSixWordsAndTheData) {
    std::vector<std::uint8_t> block = ListBlock({"a", "bc"});
    typename TestFixture::Task task(TypeParam::kServedId);
    ASSERT_EQ(task.SetRequest(RequestFor(block, 99)), 1);
    const TaskRequest* kept = task.GetRequest();
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(kept->reserved0, 11u);
    EXPECT_NE(kept->data, block.data());
    EXPECT_EQ(std::vector<std::uint8_t>(kept->data, kept->data + kept->length), block);
    EXPECT_EQ(kept->reserved3, 33u);
    EXPECT_EQ(kept->reserved4, 44u);
    EXPECT_EQ(kept->connection, 99u);
}

TYPED_TEST(VTaskFamily, SetRequestKeepsThePreviousRequestWhenMemoryRunsOut) {
    std::vector<std::uint8_t> first = ListBlock({"first"});
    std::vector<std::uint8_t> second = ListBlock({"second", "one"});
    typename TestFixture::Task task(TypeParam::kServedId);
    ASSERT_EQ(task.SetRequest(RequestFor(first, 1)), 1);
    vagent::test::ScopedAllocationFailure failure(1, 1);
    EXPECT_EQ(task.SetRequest(RequestFor(second, 2)), 0);
    EXPECT_EQ(task.GetRequest()->length, first.size());
    EXPECT_EQ(task.GetRequest()->connection, 1u);
}

TYPED_TEST(VTaskFamily, DeletingThroughTheBaseReleasesTheRequest) {
    // The leak checker of the sanitised build fails this test if the request
    // record or its data outlives the task.
    std::vector<std::uint8_t> block = ListBlock({"x", "y"});
    std::unique_ptr<VTask> task =
        std::make_unique<typename TestFixture::Task>(TypeParam::kServedId);
    ASSERT_EQ(task->SetRequest(RequestFor(block, 3)), 1);
    task.reset();
    EXPECT_EQ(task, nullptr);
}

TYPED_TEST(VTaskFamily, DoTaskRefusesNullOutputs) {
    std::vector<std::uint8_t> block = ListBlock({"a"});
    typename TestFixture::Task task(TypeParam::kServedId);
    ASSERT_EQ(task.SetRequest(RequestFor(block, 0)), 1);
    LogCapture capture;
    std::uint32_t size = 0;
    EXPECT_EQ(task.DoTask(nullptr, &size), 0);
    EXPECT_EQ(capture.Texts(), TypeParam::NullOutputTexts());
}

TYPED_TEST(VTaskFamily, DoTaskOfAnIdOutsideTheFamilyReturnsZeroWithNoBlock) {
    std::vector<std::uint8_t> block = ListBlock({"a", "b"});
    typename TestFixture::Task task(TypeParam::kForeignId);
    ASSERT_EQ(task.SetRequest(RequestFor(block, 0)), 1);
    const TaskAnswer answer = RunDoTask(task);
    EXPECT_EQ(answer.truth, 0);
    EXPECT_THAT(answer.block, IsEmpty());
}

TYPED_TEST(VTaskFamily, Result2StructRefusesMissingArgumentsWithParameterError) {
    LogCapture capture;
    typename TestFixture::Task task(TypeParam::kServedId);
    const std::uint8_t payload[4] = {0, 0, 0, 1};
    std::uint32_t value = 0;
    EXPECT_EQ(task.Result2Struct(nullptr, 4, &value), 0);
    EXPECT_EQ(task.Result2Struct(payload, 0, &value), 0);
    EXPECT_EQ(task.Result2Struct(payload, 4, nullptr), 0);
    EXPECT_THAT(capture.Texts(),
                ElementsAre("Result2Struct : Parameter Error", "Result2Struct : Parameter Error",
                            "Result2Struct : Parameter Error"));
}

TYPED_TEST(VTaskFamily, Result2StructOfAnIdOutsideTheFamilyReturnsZero) {
    typename TestFixture::Task task(TypeParam::kForeignId);
    const std::uint8_t payload[4] = {0, 0, 0, 1};
    std::uint32_t value = 0;
    EXPECT_EQ(task.Result2Struct(payload, 4, &value), 0);
    EXPECT_EQ(value, 0u);
}

TYPED_TEST(VTaskFamily, FirstTableEntryIsSetRequest) {
    std::vector<std::uint8_t> block = ListBlock({"slot"});
    typename TestFixture::Task task(TypeParam::kServedId);
    const TaskRequest request = RequestFor(block, 21);
    EXPECT_EQ(TableEntry<SetRequestEntry>(task, 0)(&task, &request), 1);
    ASSERT_NE(task.GetRequest(), nullptr);
    EXPECT_EQ(task.GetRequest()->connection, 21u);
    EXPECT_EQ(task.GetRequest()->length, block.size());
}

TYPED_TEST(VTaskFamily, SecondTableEntryIsResult2Struct) {
    LogCapture capture;
    typename TestFixture::Task task(TypeParam::kServedId);
    std::uint32_t value = 0;
    EXPECT_EQ(TableEntry<Result2StructEntry>(task, 1)(&task, nullptr, 4, &value), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("Result2Struct : Parameter Error"));
}

TYPED_TEST(VTaskFamily, ThirdTableEntryIsDoTask) {
    std::vector<std::uint8_t> block = ListBlock({"a", "b"});
    typename TestFixture::Task task(TypeParam::kForeignId);
    ASSERT_EQ(task.SetRequest(RequestFor(block, 0)), 1);
    std::uint8_t* data = reinterpret_cast<std::uint8_t*>(&task);
    std::uint32_t size = 77;
    EXPECT_EQ(TableEntry<DoTaskEntry>(task, 2)(&task, &data, &size), 0);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(size, 0u);
    EXPECT_NE(task.GetRequest(), nullptr);
}
