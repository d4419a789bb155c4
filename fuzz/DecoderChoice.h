#pragma once

#include <cstddef>
#include <cstdint>

// The decoder targets' input: the first byte chooses one decoder from the
// target's table, the rest is the payload handed to it.

namespace vagent::fuzz {

using Decoder = void (*)(const std::uint8_t*, std::uint32_t);

template <std::size_t N>
int DecodeWithChosen(const Decoder (&decoders)[N], const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    decoders[data[0] % N](data + 1, static_cast<std::uint32_t>(size - 1));
    return 0;
}

}  // namespace vagent::fuzz
