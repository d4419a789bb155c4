#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vagent/VFileTask.h"

namespace vagent::test {

// A request block of strings, as a client encodes it.
std::vector<std::uint8_t> RequestBlock(const std::vector<std::string>& strings);
// A request block of string pairs.
std::vector<std::uint8_t> PairRequestBlock(const std::vector<std::string>& first,
                                           const std::vector<std::string>& second);

// What DoTask handed out.
struct TaskResult {
    int truth = -1;
    bool hasBlock = false;
    std::vector<std::uint8_t> block;
    // The block without its 4-byte length prefix.
    std::vector<std::uint8_t> Payload() const;
};

// Gives the task the block as the service does (connection in word 5) and
// runs DoTask.
TaskResult RunFileTask(VFileTask& task, std::vector<std::uint8_t> block,
                       std::uintptr_t connection = 0);

// Decodes a result payload on a client task of the same id.
int DecodeResult(std::uint32_t taskId, const TaskResult& result, void* output);

}  // namespace vagent::test
