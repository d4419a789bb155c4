#pragma once

#include <cstdint>

#include "vagent/Export.h"

// Walks the data items of a result block's payload: each item is a 4-byte
// big-endian length and that many bytes.
class VAGENT_API DataItemCursor {
public:
    // The length reported for an item that breaks the payload's bounds.
    static constexpr std::uint32_t kFormatError = 0xFFFFFFFFu;

    DataItemCursor(const std::uint8_t* payload, std::uint32_t size);

    // The next item's bytes and, in length, its size; null with length 0 at
    // the end of the payload, null with length kFormatError when the payload
    // is malformed.
    const std::uint8_t* GetNextDataItem(std::uint32_t& length);

private:
    const std::uint8_t* base_;
    const std::uint8_t* position_;
    std::uint32_t size_;
};
