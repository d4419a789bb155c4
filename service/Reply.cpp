#include "Reply.h"

#include <algorithm>

#include "task/ByteOrder.h"
#include "vagent/ErrorCodes.h"
#include "vagent/ResultEncoders.h"

namespace vagent::service {
namespace {

constexpr std::size_t kStatusSize = 4;

}  // namespace

std::vector<std::uint8_t> StatusReply(std::uint32_t status) {
    std::vector<std::uint8_t> reply(kStatusSize);
    WriteLittleEndian32(reply.data(), status);
    return reply;
}

std::vector<std::uint8_t> BlockReply(const std::uint8_t* block, std::uint32_t size) {
    std::vector<std::uint8_t> reply(kStatusSize + size);
    WriteLittleEndian32(reply.data(), 0);
    std::copy(block, block + size, reply.begin() + kStatusSize);
    return reply;
}

std::vector<std::uint8_t> ReplyForOutcome(const TaskOutcome& outcome) {
    if (outcome.block != nullptr) {
        return BlockReply(outcome.block, outcome.blockSize);
    }
    if (outcome.truth == 0 && outcome.errorCode != 0) {
        return StatusReply(outcome.errorCode);
    }
    std::uint8_t* ack = nullptr;
    std::uint32_t ackSize = 0;
    if (Ack2Result(static_cast<std::uint32_t>(outcome.truth), ack, ackSize) == 0) {
        return StatusReply(kErrorNotEnoughMemory);
    }
    std::vector<std::uint8_t> reply = BlockReply(ack, ackSize);
    delete[] ack;
    return reply;
}

}  // namespace vagent::service
