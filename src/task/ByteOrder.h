#pragma once

#include <cstdint>

namespace vagent {

// Frames and data blocks carry their integers in network (big-endian) order;
// the byte stream and the file-transfer frames in little-endian order. Both
// are read and written byte by byte, never by casting over the buffer.

inline std::uint32_t ReadBigEndian32(const std::uint8_t* at) {
    return static_cast<std::uint32_t>(at[0]) << 24 | static_cast<std::uint32_t>(at[1]) << 16 |
           static_cast<std::uint32_t>(at[2]) << 8 | static_cast<std::uint32_t>(at[3]);
}

inline void WriteBigEndian32(std::uint8_t* at, std::uint32_t value) {
    at[0] = static_cast<std::uint8_t>(value >> 24);
    at[1] = static_cast<std::uint8_t>(value >> 16);
    at[2] = static_cast<std::uint8_t>(value >> 8);
    at[3] = static_cast<std::uint8_t>(value);
}

inline std::uint32_t ReadLittleEndian32(const std::uint8_t* at) {
    return static_cast<std::uint32_t>(at[0]) | static_cast<std::uint32_t>(at[1]) << 8 |
           static_cast<std::uint32_t>(at[2]) << 16 | static_cast<std::uint32_t>(at[3]) << 24;
}

inline void WriteLittleEndian32(std::uint8_t* at, std::uint32_t value) {
    at[0] = static_cast<std::uint8_t>(value);
    at[1] = static_cast<std::uint8_t>(value >> 8);
    at[2] = static_cast<std::uint8_t>(value >> 16);
    at[3] = static_cast<std::uint8_t>(value >> 24);
}

}  // namespace vagent
