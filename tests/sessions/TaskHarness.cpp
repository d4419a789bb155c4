#include "sessions/TaskHarness.h"

#include <gtest/gtest.h>

#include "vagent/ResultEncoders.h"

namespace vagent::test {

std::vector<std::uint8_t> RequestBlockOf(const std::vector<std::string>& items) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(VecTStringToResult(items, data, size), 1);
    std::vector<std::uint8_t> block(data, data + size);
    delete[] data;
    return block;
}

void GiveRequest(VTask& task, std::vector<std::uint8_t>& block) {
    TaskRequest request;
    request.length = static_cast<std::uint32_t>(block.size());
    request.data = block.empty() ? nullptr : block.data();
    ASSERT_EQ(task.SetRequest(request), 1);
}

TaskAnswer RunDoTask(VTask& task) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    TaskAnswer answer;
    answer.truth = task.DoTask(&data, &size);
    if (data != nullptr) {
        answer.block.assign(data, data + size);
    }
    delete[] data;
    return answer;
}

int DecodeAnswer(VTask& client, const TaskAnswer& answer, void* output) {
    if (answer.block.size() < 4) {
        ADD_FAILURE() << "no block to decode";
        return -1;
    }
    return client.Result2Struct(answer.block.data() + 4,
                                static_cast<std::uint32_t>(answer.block.size() - 4), output);
}

std::int64_t AcknowledgedValue(const TaskAnswer& answer) {
    const std::vector<std::uint8_t>& b = answer.block;
    if (b.size() != 8 || b[0] != 0 || b[1] != 0 || b[2] != 0 || b[3] != 4) {
        return -1;
    }
    return std::int64_t{b[4]} << 24 | std::int64_t{b[5]} << 16 | std::int64_t{b[6]} << 8 | b[7];
}

FakeSessionHost::FakeSessionHost() {
    std::filesystem::create_directories(directory.Path() / "lib");
    std::filesystem::create_directories(directory.Path() / "bin");
    host.libraryPath = ToLibraryPath(directory.Path() / "lib" / "vagent.dll");
    host.executablePath = ToLibraryPath(directory.Path() / "bin" / "vagentd.exe");
}

std::string FakeSessionHost::LibraryConfig() const {
    return ReadWholeFile(LibraryConfigFile());
}

std::string FakeSessionHost::ExecutableConfig() const {
    return ReadWholeFile(ExecutableConfigFile());
}

}  // namespace vagent::test
