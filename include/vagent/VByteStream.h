#pragma once

#include <cstdint>
#include <string>

#include "vagent/Export.h"

// A growable byte stream written and read in little-endian order. A string
// element is its 4-byte length (characters + 1) and its zero-terminated text.
class VAGENT_API VByteStream {
public:
    static constexpr std::uint32_t kMinimum = 10;

    // Throws VStreamException("new failed!") when the buffer cannot be
    // allocated. Sizes below 10 are raised to 10.
    VByteStream(std::uint32_t initialSize, std::uint32_t growthStep);
    ~VByteStream();
    VByteStream(const VByteStream&) = delete;
    VByteStream& operator=(const VByteStream&) = delete;

    int Reserve(std::uint32_t count);
    int PutDword(std::uint32_t value);
    int PutString(const std::string& text);
    int PutBytes(const void* data, std::uint32_t count);
    int GetDword(std::uint32_t& value);
    int GetString(std::string& text);

    const std::uint8_t* Data() const { return buffer_; }
    std::uint32_t Used() const { return used_; }
    std::uint32_t Capacity() const { return capacity_; }
    std::uint32_t GrowthStep() const { return step_; }
    std::uint32_t ReadOffset() const { return static_cast<std::uint32_t>(read_ - buffer_); }
    std::uint32_t WriteOffset() const { return static_cast<std::uint32_t>(write_ - buffer_); }

private:
    std::uint8_t* read_;
    std::uint8_t* write_;
    std::uint8_t* buffer_;
    std::uint32_t used_;
    std::uint32_t capacity_;
    std::uint32_t step_;
};
