#include "vagent/VByteStream.h"

#include <cstring>
#include <new>

#include "task/ByteOrder.h"
#include "vagent/VStreamException.h"

namespace {

using vagent::ReadLittleEndian32;
using vagent::WriteLittleEndian32;

constexpr std::uint32_t kDwordSize = 4;
constexpr std::uint64_t kLargestSize = 0xFFFFFFFFull;

std::uint32_t AtLeastMinimum(std::uint32_t value) {
    return value < VByteStream::kMinimum ? VByteStream::kMinimum : value;
}

}  // namespace

VByteStream::VByteStream(std::uint32_t initialSize, std::uint32_t growthStep)
    : read_(nullptr),
      write_(nullptr),
      buffer_(nullptr),
      used_(0),
      capacity_(AtLeastMinimum(initialSize)),
      step_(AtLeastMinimum(growthStep)) {
    buffer_ = new (std::nothrow) std::uint8_t[capacity_];
    if (buffer_ == nullptr) {
        throw VStreamException("new failed!");
    }
    read_ = buffer_;
    write_ = buffer_;
}

VByteStream::~VByteStream() {
    delete[] buffer_;
}

int VByteStream::Reserve(std::uint32_t count) {
    if (std::uint64_t{WriteOffset()} + count <= capacity_) {
        return 1;
    }
    // Whole steps, at least one more than needed, so that a run of small puts
    // does not reallocate on every call.
    const std::uint64_t shortfall = std::uint64_t{count} + used_ - capacity_;
    const std::uint64_t grown = (shortfall / step_ + 1) * step_ + capacity_;
    if (grown > kLargestSize) {
        return 0;
    }
    auto* larger = new (std::nothrow) std::uint8_t[static_cast<std::size_t>(grown)];
    if (larger == nullptr) {
        return 0;
    }
    std::memcpy(larger, buffer_, used_);
    const std::uint32_t readOffset = ReadOffset();
    const std::uint32_t writeOffset = WriteOffset();
    read_ = larger + readOffset;
    write_ = larger + writeOffset;
    delete[] buffer_;
    buffer_ = larger;
    capacity_ = static_cast<std::uint32_t>(grown);
    return 1;
}

int VByteStream::PutDword(std::uint32_t value) {
    std::uint8_t bytes[kDwordSize];
    WriteLittleEndian32(bytes, value);
    return PutBytes(bytes, kDwordSize);
}

int VByteStream::PutString(const std::string& text) {
    const std::uint64_t withTerminator = std::uint64_t{text.size()} + 1;
    if (withTerminator + kDwordSize > kLargestSize ||
        !Reserve(static_cast<std::uint32_t>(withTerminator + kDwordSize))) {
        return 0;
    }
    const auto length = static_cast<std::uint32_t>(withTerminator);
    return PutDword(length) && PutBytes(text.c_str(), length);
}

int VByteStream::PutBytes(const void* data, std::uint32_t count) {
    if (!Reserve(count)) {
        return 0;
    }
    if (count != 0) {
        std::memcpy(write_, data, count);
    }
    write_ += count;
    if (WriteOffset() > used_) {
        used_ = WriteOffset();
    }
    return 1;
}

int VByteStream::GetDword(std::uint32_t& value) {
    if (used_ - ReadOffset() < kDwordSize) {
        return 0;
    }
    value = ReadLittleEndian32(read_);
    read_ += kDwordSize;
    return 1;
}

int VByteStream::GetString(std::string& text) {
    const std::uint32_t remaining = used_ - ReadOffset();
    if (remaining < kDwordSize) {
        return 0;
    }
    const std::uint32_t length = ReadLittleEndian32(read_);
    // A length of 0 leaves no terminator to check, so it is no string.
    if (length == 0 || length > remaining - kDwordSize) {
        return 0;
    }
    const std::uint8_t* characters = read_ + kDwordSize;
    if (characters[length - 1] != 0) {
        return 0;
    }
    text.assign(reinterpret_cast<const char*>(characters));
    read_ += kDwordSize + length;
    return 1;
}
