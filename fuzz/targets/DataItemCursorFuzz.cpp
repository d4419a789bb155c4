// Walks arbitrary bytes as a payload: every item handed out must lie inside
// the payload, and the walk must end.
#include <cstdint>
#include <cstdlib>

#include "vagent/DataItemCursor.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto payloadSize = static_cast<std::uint32_t>(size);
    DataItemCursor cursor(data, payloadSize);
    // Each item consumes at least its 4-byte length field.
    for (std::size_t step = 0; step <= size / 4 + 1; ++step) {
        std::uint32_t length = 0;
        const std::uint8_t* item = cursor.GetNextDataItem(length);
        if (item == nullptr) {
            return 0;
        }
        if (item < data + 4 || length > static_cast<std::size_t>(data + size - item)) {
            std::abort();
        }
    }
    std::abort();
}
