#include "files/FileTaskHarness.h"

#include <gtest/gtest.h>

#include "vagent/ResultEncoders.h"

namespace vagent::test {
namespace {

std::vector<std::uint8_t> Adopt(int encoded, std::uint8_t* data, std::uint32_t size) {
    EXPECT_EQ(encoded, 1);
    std::vector<std::uint8_t> block(data, data + size);
    delete[] data;
    return block;
}

}  // namespace

std::vector<std::uint8_t> RequestBlock(const std::vector<std::string>& strings) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int encoded = VecTStringToResult(strings, data, size);
    return Adopt(encoded, data, size);
}

std::vector<std::uint8_t> PairRequestBlock(const std::vector<std::string>& first,
                                           const std::vector<std::string>& second) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int encoded = VecTString2ToResult(first, second, data, size);
    return Adopt(encoded, data, size);
}

std::vector<std::uint8_t> TaskResult::Payload() const {
    return block.size() < 4 ? std::vector<std::uint8_t>()
                            : std::vector<std::uint8_t>(block.begin() + 4, block.end());
}

TaskResult RunFileTask(VFileTask& task, std::vector<std::uint8_t> block,
                       std::uintptr_t connection) {
    TaskRequest request;
    request.length = static_cast<std::uint32_t>(block.size());
    request.data = block.empty() ? nullptr : block.data();
    request.connection = connection;
    EXPECT_EQ(task.SetRequest(request), 1);
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    TaskResult result;
    result.truth = task.DoTask(&data, &size);
    result.hasBlock = data != nullptr;
    if (data != nullptr) {
        result.block.assign(data, data + size);
    }
    delete[] data;
    return result;
}

int DecodeResult(std::uint32_t taskId, const TaskResult& result, void* output) {
    VFileTask client(taskId);
    const std::vector<std::uint8_t> payload = result.Payload();
    return client.Result2Struct(payload.data(), static_cast<std::uint32_t>(payload.size()), output);
}

}  // namespace vagent::test
