#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace vagent {

// A result block built in one allocation: the 4-byte big-endian payload
// length, then items of a 4-byte big-endian length and their bytes.
class ItemBlock {
public:
    // Bytes one item takes in the payload.
    static std::uint64_t ItemSize(std::uint64_t length) { return 4 + length; }

    // Allocates the block for a payload of the given length and writes the
    // prefix; false when the block cannot be had.
    bool Allocate(std::uint64_t payload);
    // A 4-byte item holding the number, big-endian.
    void PutNumber(std::int32_t number);
    // A bare big-endian word, not an item.
    void PutWord(std::uint32_t word);
    // An item holding the text's characters, no terminator.
    void PutText(const std::string& text);
    // Hands the block to the caller, who deletes it with delete[].
    std::uint8_t* Release(std::uint32_t& size);

private:
    std::unique_ptr<std::uint8_t[]> block_;
    std::uint32_t size_ = 0;
    std::uint32_t at_ = 0;
};

}  // namespace vagent
