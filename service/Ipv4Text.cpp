#include "Ipv4Text.h"

#include <cstddef>

namespace vagent::service {
namespace {

constexpr int kParts = 4;
constexpr std::size_t kMaxPartDigits = 3;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// One decimal part at text[at]; at moves past it.
bool ParsePart(const std::string& text, std::size_t& at, std::uint32_t& part) {
    const std::size_t start = at;
    part = 0;
    while (at < text.size() && IsDigit(text[at]) && at - start < kMaxPartDigits) {
        part = part * 10 + static_cast<std::uint32_t>(text[at] - '0');
        ++at;
    }
    const bool leadingZero = at - start > 1 && text[start] == '0';
    return at > start && part <= 255 && !leadingZero;
}

}  // namespace

bool ParseIpv4(const std::string& text, std::uint32_t& address) {
    std::uint32_t value = 0;
    std::size_t at = 0;
    for (int i = 0; i < kParts; ++i) {
        if (i > 0) {
            if (at >= text.size() || text[at] != '.') {
                return false;
            }
            ++at;
        }
        std::uint32_t part = 0;
        if (!ParsePart(text, at, part)) {
            return false;
        }
        value = value << 8 | part;
    }
    if (at != text.size()) {
        return false;
    }
    address = value;
    return true;
}

std::string FormatIpv4(std::uint32_t address) {
    return std::to_string(address >> 24) + "." + std::to_string(address >> 16 & 0xFF) + "." +
           std::to_string(address >> 8 & 0xFF) + "." + std::to_string(address & 0xFF);
}

}  // namespace vagent::service
