#include "sessions/DecimalText.h"

#include <cctype>
#include <limits>

namespace vagent {

std::int32_t DecimalValue(const std::string& text) {
    std::size_t at = 0;
    while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at])) != 0) {
        ++at;
    }
    bool negative = false;
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
        negative = text[at] == '-';
        ++at;
    }
    // One past the largest magnitude, so that the smallest value fits too.
    constexpr std::int64_t kLimit = std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1;
    std::int64_t magnitude = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
        magnitude = magnitude * 10 + (text[at] - '0');
        if (magnitude > kLimit) {
            magnitude = kLimit;
        }
    }
    const std::int64_t value = negative ? -magnitude : magnitude;
    if (value > std::numeric_limits<std::int32_t>::max()) {
        return std::numeric_limits<std::int32_t>::max();
    }
    return static_cast<std::int32_t>(value);
}

}  // namespace vagent
