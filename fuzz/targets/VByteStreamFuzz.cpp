// Reads arbitrary bytes put into a stream as strings and double words, then
// checks that strings made of the same bytes read back as they were put.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "vagent/VByteStream.h"

namespace {

// The first byte chooses the initial size and the growth step, so growth
// from the smallest buffers is reached.
void ReadEverything(const std::uint8_t* data, std::uint32_t size, std::uint8_t choices) {
    VByteStream stream((choices & 0x0Fu) * 3, (choices >> 4) * 3u);
    if (stream.PutBytes(data, size) != 1) {
        std::abort();
    }
    std::string text;
    std::uint32_t value = 0;
    while (stream.GetString(text) == 1 || stream.GetDword(value) == 1) {
        if (stream.ReadOffset() > stream.Used()) {
            std::abort();
        }
    }
    if (stream.Used() - stream.ReadOffset() >= 4) {
        std::abort();
    }
}

void RoundTripStrings(const std::uint8_t* data, std::uint32_t size, std::uint8_t choices) {
    VByteStream stream((choices >> 4) * 3u, (choices & 0x0Fu) * 3);
    const std::string all(reinterpret_cast<const char*>(data), size);
    const std::string::size_type half = all.size() / 2;
    const std::string first = all.substr(0, half);
    const std::string second = all.substr(half);
    if (stream.PutString(first) != 1 || stream.PutDword(size) != 1 ||
        stream.PutString(second) != 1) {
        std::abort();
    }
    std::string text;
    std::uint32_t value = 0;
    if (stream.GetString(text) != 1 || text != first.c_str() || stream.GetDword(value) != 1 ||
        value != size || stream.GetString(text) != 1 || text != second.c_str() ||
        stream.ReadOffset() != stream.Used()) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const auto rest = static_cast<std::uint32_t>(size - 1);
    ReadEverything(data + 1, rest, data[0]);
    RoundTripStrings(data + 1, rest, data[0]);
    return 0;
}
