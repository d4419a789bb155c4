#include "vagent/DataItemCursor.h"

#include "task/ByteOrder.h"
#include "vagent/DllLog.h"

namespace {

using vagent::ReadBigEndian32;

constexpr std::uint32_t kLengthFieldSize = 4;

const std::uint8_t* FormatError(std::uint32_t& length) {
    DllLogPrintf("GetNextDataItem : Data Format Error!");
    length = DataItemCursor::kFormatError;
    return nullptr;
}

}  // namespace

DataItemCursor::DataItemCursor(const std::uint8_t* payload, std::uint32_t size)
    : base_(payload), position_(payload), size_(size) {}

const std::uint8_t* DataItemCursor::GetNextDataItem(std::uint32_t& length) {
    // Counting what remains, rather than forming base + size, keeps the bounds
    // checks free of pointer overflow in a 32-bit process.
    const auto consumed = static_cast<std::uint32_t>(position_ - base_);
    const std::uint32_t remaining = size_ - consumed;
    if (consumed != 0 && remaining == 0) {
        length = 0;
        return nullptr;
    }
    if (remaining < kLengthFieldSize) {
        return FormatError(length);
    }
    const std::uint32_t itemLength = ReadBigEndian32(position_);
    position_ += kLengthFieldSize;
    if (itemLength > remaining - kLengthFieldSize) {
        return FormatError(length);
    }
    const std::uint8_t* item = position_;
    position_ += itemLength;
    length = itemLength;
    return item;
}
