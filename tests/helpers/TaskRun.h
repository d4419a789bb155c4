#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vagent/VTask.h"

namespace vagent::test {

// Request blocks as a client builds them; the encoding must succeed.
std::vector<std::uint8_t> ListBlock(const std::vector<std::string>& items);
std::vector<std::uint8_t> PairBlock(const std::vector<std::string>& first,
                                    const std::vector<std::string>& second);
std::vector<std::uint8_t> TripleBlock(const std::vector<std::string>& first,
                                      const std::vector<std::string>& second,
                                      const std::vector<std::string>& third);
std::vector<std::uint8_t> HeadBlock(const std::string& head, const std::vector<std::string>& rest);

// Gives the task the block as the agent service does, with the connection in
// the request's last word.
void GiveRequest(VTask& task, const std::vector<std::uint8_t>& block,
                 std::uintptr_t connection = 0);

// What DoTask answered: its truth value and the result block (empty when
// nothing was handed out).
struct TaskAnswer {
    int truth = -1;
    std::vector<std::uint8_t> block;
    // The block's payload, as the client hands it to Result2Struct.
    const std::uint8_t* Payload() const { return block.size() > 4 ? block.data() + 4 : nullptr; }
    std::uint32_t PayloadLength() const {
        return block.size() > 4 ? static_cast<std::uint32_t>(block.size() - 4) : 0;
    }
    std::vector<std::uint8_t> PayloadBytes() const {
        return std::vector<std::uint8_t>(Payload(), Payload() + PayloadLength());
    }
    // The acknowledgement value the block carries; -1 when it is none.
    long long Ack() const;
};

// Runs DoTask on the request the task holds.
TaskAnswer RunDoTask(VTask& task);

// Gives the task the request and the work environment, then runs DoTask.
TaskAnswer RunTask(VTask& task, const std::vector<std::uint8_t>& request, int workEnv);

// Hands the answer's payload to a client task's Result2Struct; an answer
// without a block is a test failure.
int DecodeAnswer(VTask& client, const TaskAnswer& answer, void* output);

}  // namespace vagent::test
