#include "vagent/VTask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"
#include "helpers/TaskRun.h"
#include "task/EchoTask.h"
#include "vagent/ResultEncoders.h"

using ::testing::ElementsAre;
using vagent::test::EchoTask;
using vagent::test::ListBlock;
using vagent::test::RunDoTask;
using vagent::test::TaskAnswer;

namespace {

// A request record as the agent service fills it from a received block.
TaskRequest RequestFor(std::vector<std::uint8_t>& block, std::uintptr_t connection = 7) {
    TaskRequest request;
    request.reserved0 = 11;
    request.length = static_cast<std::uint32_t>(block.size());
    request.data = block.data();
    request.reserved3 = 33;
    request.reserved4 = 44;
    request.connection = connection;
    return request;
}

}  // namespace

TEST(VTask, StartsWithoutRequestAndWithErrorCodeZero) {
    EchoTask task(EchoTask::kReverse);
    EXPECT_EQ(task.GetRequest(), nullptr);
    EXPECT_EQ(task.GetErrorCode(), 0u);
    EXPECT_EQ(task.GetTaskId(), EchoTask::kReverse);
}

TEST(VTask, SetRequestCopiesAllSixWordsAndTheData) {
    std::vector<std::uint8_t> block = ListBlock({"a", "bc"});
    EchoTask task(EchoTask::kReverse);
    ASSERT_EQ(task.SetRequest(RequestFor(block, 99)), 1);
    const TaskRequest* kept = task.GetRequest();
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(kept->reserved0, 11u);
    EXPECT_EQ(kept->length, block.size());
    EXPECT_NE(kept->data, block.data());
    EXPECT_EQ(std::vector<std::uint8_t>(kept->data, kept->data + kept->length), block);
    EXPECT_EQ(kept->reserved3, 33u);
    EXPECT_EQ(kept->reserved4, 44u);
    EXPECT_EQ(kept->connection, 99u);
}

TEST(VTask, SetRequestWithoutDataKeepsNoData) {
    EchoTask task(EchoTask::kReverse);
    TaskRequest request;
    request.connection = 5;
    ASSERT_EQ(task.SetRequest(request), 1);
    EXPECT_EQ(task.GetRequest()->data, nullptr);
    EXPECT_EQ(task.GetRequest()->connection, 5u);
}

TEST(VTask, SetRequestReplacesThePreviousRequest) {
    std::vector<std::uint8_t> first = ListBlock({"first"});
    std::vector<std::uint8_t> second = ListBlock({"second", "one"});
    EchoTask task(EchoTask::kReverse);
    ASSERT_EQ(task.SetRequest(RequestFor(first)), 1);
    ASSERT_EQ(task.SetRequest(RequestFor(second)), 1);
    EXPECT_EQ(task.GetRequest()->length, second.size());
}

TEST(VTask, SetRequestKeepsThePreviousRequestWhenTheRecordCannotBeAllocated) {
    std::vector<std::uint8_t> first = ListBlock({"first"});
    std::vector<std::uint8_t> second = ListBlock({"second", "one"});
    EchoTask task(EchoTask::kReverse);
    ASSERT_EQ(task.SetRequest(RequestFor(first)), 1);
    vagent::test::ScopedAllocationFailure failure(0, 1);
    EXPECT_EQ(task.SetRequest(RequestFor(second)), 0);
    EXPECT_EQ(failure.Refused(), 1);
    EXPECT_EQ(task.GetRequest()->length, first.size());
}

TEST(VTask, SetRequestKeepsThePreviousRequestWhenTheDataCannotBeAllocated) {
    std::vector<std::uint8_t> first = ListBlock({"first"});
    std::vector<std::uint8_t> second = ListBlock({"second", "one"});
    EchoTask task(EchoTask::kReverse);
    ASSERT_EQ(task.SetRequest(RequestFor(first)), 1);
    vagent::test::ScopedAllocationFailure failure(1, 1);
    EXPECT_EQ(task.SetRequest(RequestFor(second)), 0);
    EXPECT_EQ(failure.Refused(), 1);
    EXPECT_EQ(task.GetRequest()->length, first.size());
    EXPECT_EQ(
        std::vector<std::uint8_t>(task.GetRequest()->data, task.GetRequest()->data + first.size()),
        first);
}

TEST(VTask, DeletingThroughTheBaseReleasesTheRequest) {
    // The leak checker of the sanitised build fails this test if the request
    // record or its data outlives the task.
    std::vector<std::uint8_t> block = ListBlock({"x", "y"});
    std::unique_ptr<VTask> task = std::make_unique<EchoTask>(EchoTask::kReverse);
    ASSERT_EQ(task->SetRequest(RequestFor(block)), 1);
    task.reset();
    SUCCEED();
}

TEST(VTask, SetWorkEnvHandsBackThePreviousEnvironment) {
    EchoTask task(EchoTask::kReverse);
    int previous = -1;
    EXPECT_EQ(task.SetWorkEnv(3, nullptr), 1);
    EXPECT_EQ(task.SetWorkEnv(-8, &previous), 1);
    EXPECT_EQ(previous, 3);
    EXPECT_EQ(task.GetWorkEnv(), -8);
}

TEST(VTask, DoTaskRefusesNullOutputsWithParameterError) {
    vagent::test::LogCapture capture;
    EchoTask task(EchoTask::kReverse);
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(task.DoTask(nullptr, &size), 0);
    EXPECT_EQ(task.DoTask(&data, nullptr), 0);
    EXPECT_THAT(capture.Texts(),
                ElementsAre("DoTask : Parameter Error", "DoTask : Parameter Error"));
}

TEST(VTask, DoTaskWithoutRequestStoresInvalidSettingAndReturnsZero) {
    EchoTask task(EchoTask::kReverse);
    std::uint8_t* data = reinterpret_cast<std::uint8_t*>(&task);
    std::uint32_t size = 77;
    EXPECT_EQ(task.DoTask(&data, &size), 0);
    EXPECT_EQ(task.GetErrorCode(), 0xE6000002u);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(size, 0u);
}

TEST(VTask, DoTaskOutsideTheFamilyRangeReturnsZeroWithNoBlock) {
    std::vector<std::uint8_t> block = ListBlock({"a"});
    EchoTask task(3);
    ASSERT_EQ(task.SetRequest(RequestFor(block)), 1);
    const TaskAnswer result = RunDoTask(task);
    EXPECT_EQ(result.truth, 0);
    EXPECT_TRUE(result.block.empty());
}

TEST(VTask, DoTaskHandsOutTheOperationsResultBlock) {
    std::vector<std::uint8_t> block = ListBlock({"a", "bc"});
    EchoTask task(EchoTask::kReverse);
    ASSERT_EQ(task.SetRequest(RequestFor(block)), 1);
    const TaskAnswer result = RunDoTask(task);
    EXPECT_EQ(result.truth, 1);
    EXPECT_EQ(result.block,
              (std::vector<std::uint8_t>{0, 0, 0, 11, 0, 0, 0, 2, 'b', 'c', 0, 0, 0, 1, 'a'}));
}

TEST(VTask, DoTaskWithoutResultDataHandsOutAnAcknowledgementOfOne) {
    std::vector<std::uint8_t> block = ListBlock({"a"});
    EchoTask task(EchoTask::kNonEmpty);
    ASSERT_EQ(task.SetRequest(RequestFor(block)), 1);
    const TaskAnswer result = RunDoTask(task);
    EXPECT_EQ(result.truth, 1);
    EXPECT_EQ(result.block, (std::vector<std::uint8_t>{0, 0, 0, 4, 0, 0, 0, 1}));
}

TEST(VTask, RequestShorterThanFourBytesYieldsAnAcknowledgementOfZero) {
    std::vector<std::uint8_t> block = {0, 0, 0};
    EchoTask task(EchoTask::kReverse);
    ASSERT_EQ(task.SetRequest(RequestFor(block)), 1);
    const TaskAnswer result = RunDoTask(task);
    EXPECT_EQ(result.truth, 0);
    EXPECT_EQ(result.block, (std::vector<std::uint8_t>{0, 0, 0, 4, 0, 0, 0, 0}));
}

TEST(VTask, UndecodableRequestYieldsAnAcknowledgementOfZero) {
    // The one item claims 9 bytes where 1 follows.
    std::vector<std::uint8_t> block = {0, 0, 0, 5, 0, 0, 0, 9, 'a'};
    vagent::test::LogCapture capture;
    EchoTask task(EchoTask::kReverse);
    ASSERT_EQ(task.SetRequest(RequestFor(block)), 1);
    const TaskAnswer result = RunDoTask(task);
    EXPECT_EQ(result.truth, 0);
    EXPECT_EQ(result.block, (std::vector<std::uint8_t>{0, 0, 0, 4, 0, 0, 0, 0}));
    EXPECT_THAT(capture.Texts(), ElementsAre("GetNextDataItem : Data Format Error!",
                                             "Data2VecTString : Data Format Error"));
}

TEST(VTask, FailedOperationReleasesItsDataAndAcknowledgesZero) {
    // The leak checker of the sanitised build fails this test if the block
    // of the failed operation is not released.
    auto* data = new std::uint8_t[8]{0, 0, 0, 4, 0, 0, 0, 9};
    std::uint8_t* out = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(EchoTask::HandOutResult(0, data, 8, &out, &size), 0);
    std::vector<std::uint8_t> block(out, out + size);
    delete[] out;
    EXPECT_EQ(block, (std::vector<std::uint8_t>{0, 0, 0, 4, 0, 0, 0, 0}));
}

TEST(VTask, Result2StructRefusesMissingArgumentsWithParameterError) {
    vagent::test::LogCapture capture;
    EchoTask task(EchoTask::kNonEmpty);
    const std::uint8_t payload[4] = {0, 0, 0, 1};
    std::uint32_t value = 0;
    EXPECT_EQ(task.Result2Struct(nullptr, 4, &value), 0);
    EXPECT_EQ(task.Result2Struct(payload, 0, &value), 0);
    EXPECT_EQ(task.Result2Struct(payload, 4, nullptr), 0);
    EXPECT_THAT(capture.Texts(),
                ElementsAre("Result2Struct : Parameter Error", "Result2Struct : Parameter Error",
                            "Result2Struct : Parameter Error"));
}

TEST(VTask, Result2StructDecodesByTaskId) {
    EchoTask acknowledgement(EchoTask::kNonEmpty);
    const std::uint8_t value42[4] = {0, 0, 0, 42};
    std::uint32_t value = 0;
    EXPECT_EQ(acknowledgement.Result2Struct(value42, 4, &value), 1);
    EXPECT_EQ(value, 42u);

    EchoTask list(EchoTask::kReverse);
    const std::uint8_t items[] = {0, 0, 0, 2, 'h', 'i', 0, 0, 0, 0};
    std::vector<std::string> strings;
    EXPECT_EQ(list.Result2Struct(items, sizeof items, &strings), 1);
    EXPECT_THAT(strings, ElementsAre("hi", ""));

    EchoTask unknown(9);
    EXPECT_EQ(unknown.Result2Struct(value42, 4, &value), 0);
}

TEST(VTask, ServiceAndClientRoundTrip) {
    std::vector<std::uint8_t> block = ListBlock({"one", "two", "three"});
    EchoTask service(EchoTask::kReverse);
    service.SetWorkEnv(1, nullptr);
    ASSERT_EQ(service.SetRequest(RequestFor(block)), 1);
    const TaskAnswer answer = RunDoTask(service);
    ASSERT_EQ(answer.truth, 1);
    ASSERT_GE(answer.block.size(), 4u);

    EchoTask client(EchoTask::kReverse);
    std::vector<std::string> strings;
    ASSERT_EQ(client.Result2Struct(answer.block.data() + 4,
                                   static_cast<std::uint32_t>(answer.block.size() - 4), &strings),
              1);
    EXPECT_THAT(strings, ElementsAre("three", "two", "one"));
}
