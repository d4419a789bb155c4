#pragma once

#include <cstdint>
#include <vector>

namespace vagent::service {

// What one DoTask left behind: its truth value, the task's error code and
// the block it handed out (null when none).
struct TaskOutcome {
    int truth = 0;
    std::uint32_t errorCode = 0;
    const std::uint8_t* block = nullptr;
    std::uint32_t blockSize = 0;
};

// The answer to a request: the status word little-endian (the client takes
// it in its own byte order), then, for status 0, a result block as it
// stands, whose own big-endian length prefix is the reply's length field.

// Status 0 and the block.
std::vector<std::uint8_t> BlockReply(const std::uint8_t* block, std::uint32_t size);
// A nonzero status alone: the client reads nothing after it.
std::vector<std::uint8_t> StatusReply(std::uint32_t status);
// The answer to a task: its block when it handed one out; otherwise its
// error code when it failed with one; otherwise status 0 and an
// acknowledgement carrying its truth value.
std::vector<std::uint8_t> ReplyForOutcome(const TaskOutcome& outcome);

}  // namespace vagent::service
