#include "task/ItemBlock.h"

#include <cstring>
#include <new>

#include "task/ByteOrder.h"

namespace vagent {
namespace {

// The whole block, prefix included, must have a size that fits 32 bits.
constexpr std::uint64_t kLargestPayload = 0xFFFFFFFFull - 4;

}  // namespace

bool ItemBlock::Allocate(std::uint64_t payload) {
    if (payload > kLargestPayload) {
        return false;
    }
    size_ = static_cast<std::uint32_t>(payload + 4);
    block_.reset(new (std::nothrow) std::uint8_t[size_]);
    if (!block_) {
        return false;
    }
    at_ = 0;
    PutWord(static_cast<std::uint32_t>(payload));
    return true;
}

void ItemBlock::PutWord(std::uint32_t word) {
    WriteBigEndian32(block_.get() + at_, word);
    at_ += 4;
}

void ItemBlock::PutNumber(std::int32_t number) {
    PutWord(4);
    PutWord(static_cast<std::uint32_t>(number));
}

void ItemBlock::PutText(const std::string& text) {
    PutWord(static_cast<std::uint32_t>(text.size()));
    if (!text.empty()) {
        std::memcpy(block_.get() + at_, text.data(), text.size());
    }
    at_ += static_cast<std::uint32_t>(text.size());
}

std::uint8_t* ItemBlock::Release(std::uint32_t& size) {
    size = size_;
    return block_.release();
}

}  // namespace vagent
