#include "helpers/TaskRun.h"

#include <gtest/gtest.h>

#include "vagent/ResultEncoders.h"

namespace vagent::test {
namespace {

std::vector<std::uint8_t> Adopt(int encoded, std::uint8_t* data, std::uint32_t size) {
    EXPECT_EQ(encoded, 1);
    std::vector<std::uint8_t> block;
    if (encoded != 0 && data != nullptr) {
        block.assign(data, data + size);
    }
    delete[] data;
    return block;
}

}  // namespace

std::vector<std::uint8_t> ListBlock(const std::vector<std::string>& items) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int encoded = VecTStringToResult(items, data, size);
    return Adopt(encoded, data, size);
}

std::vector<std::uint8_t> PairBlock(const std::vector<std::string>& first,
                                    const std::vector<std::string>& second) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int encoded = VecTString2ToResult(first, second, data, size);
    return Adopt(encoded, data, size);
}

std::vector<std::uint8_t> TripleBlock(const std::vector<std::string>& first,
                                      const std::vector<std::string>& second,
                                      const std::vector<std::string>& third) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int encoded = VecTString3ToResult(first, second, third, data, size);
    return Adopt(encoded, data, size);
}

std::vector<std::uint8_t> HeadBlock(const std::string& head, const std::vector<std::string>& rest) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int encoded = StrVecToResult(head, rest, data, size);
    return Adopt(encoded, data, size);
}

void GiveRequest(VTask& task, const std::vector<std::uint8_t>& block, std::uintptr_t connection) {
    std::vector<std::uint8_t> copy = block;
    TaskRequest request;
    request.length = static_cast<std::uint32_t>(copy.size());
    request.data = copy.empty() ? nullptr : copy.data();
    request.connection = connection;
    EXPECT_EQ(task.SetRequest(request), 1);
}

long long TaskAnswer::Ack() const {
    if (block.size() != 8 || block[0] != 0 || block[1] != 0 || block[2] != 0 || block[3] != 4) {
        return -1;
    }
    return static_cast<long long>(block[4]) << 24 | static_cast<long long>(block[5]) << 16 |
           static_cast<long long>(block[6]) << 8 | static_cast<long long>(block[7]);
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

TaskAnswer RunTask(VTask& task, const std::vector<std::uint8_t>& request, int workEnv) {
    GiveRequest(task, request);
    task.SetWorkEnv(workEnv, nullptr);
    return RunDoTask(task);
}

int DecodeAnswer(VTask& client, const TaskAnswer& answer, void* output) {
    if (answer.block.size() < 4) {
        ADD_FAILURE() << "no block to decode";
        return -1;
    }
    return client.Result2Struct(answer.block.data() + 4,
                                static_cast<std::uint32_t>(answer.block.size() - 4), output);
}

}  // namespace vagent::test
