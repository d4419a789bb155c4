#pragma once

#include <cstdint>
#include <string>

#include "vagent/VByteStream.h"
#include "vagent/VFileTask.h"

namespace vagent::files {

// The size field of an end frame.
constexpr std::uint32_t kEndFrameSize = 0xFFFFFFFFu;
// Content travels in pieces of at most this many bytes.
constexpr std::uint32_t kLargestPiece = 1024;
// The longest frame a receiver accepts: the four numbers and a path of up to
// 32,767 characters with its zero, rounded up. A longer length field is not
// believed.
constexpr std::uint32_t kLargestFrame = 65536;
// The frame stream's initial size and growth step.
constexpr std::uint32_t kFrameStreamStep = 1024;

// Writes a frame's body (size, attributes, block size, name), little-endian,
// without the length that precedes it on the wire. False when the stream
// cannot grow.
bool BuildFrame(VByteStream& frame, std::uint32_t size, std::uint32_t attributes,
                std::uint32_t blockSize, const std::string& name);

// Reads a frame's body back. blockField is the block-size field as sent (an
// end frame's status); the header keeps its low 16 bits. False when a field
// is missing or the name lacks its terminating zero.
bool ParseFrame(VByteStream& frame, FileFrameHeader& header, std::uint32_t& blockField);

}  // namespace vagent::files
