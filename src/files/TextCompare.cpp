#include "files/TextCompare.h"

#include <algorithm>

namespace vagent::files {
namespace {

int Folded(char letter) {
    const auto value = static_cast<unsigned char>(letter);
    return value >= 'A' && value <= 'Z' ? value - 'A' + 'a' : value;
}

}  // namespace

int CompareIgnoringCase(const std::string& left, const std::string& right) {
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t index = 0; index < common; ++index) {
        const int difference = Folded(left[index]) - Folded(right[index]);
        if (difference != 0) {
            return difference;
        }
    }
    if (left.size() == right.size()) {
        return 0;
    }
    return left.size() < right.size() ? -1 : 1;
}

bool StartsWithIgnoringCase(const std::string& text, const std::string& prefix) {
    return text.size() >= prefix.size() &&
           CompareIgnoringCase(text.substr(0, prefix.size()), prefix) == 0;
}

}  // namespace vagent::files
