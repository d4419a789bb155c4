#include "support/TextCompare.h"

#include <algorithm>

namespace vagent {
namespace {

int Folded(char letter) {
    const auto value = static_cast<unsigned char>(letter);
    return value >= 'A' && value <= 'Z' ? value - 'A' + 'a' : value;
}

// Compares the first count letters of both texts, which hold at least that many.
int CompareLetters(const std::string& left, const std::string& right, std::size_t count) {
    for (std::size_t index = 0; index < count; ++index) {
        const int difference = Folded(left[index]) - Folded(right[index]);
        if (difference != 0) {
            return difference;
        }
    }
    return 0;
}

}  // namespace

int CompareIgnoringCase(const std::string& left, const std::string& right) {
    const int difference = CompareLetters(left, right, std::min(left.size(), right.size()));
    if (difference != 0 || left.size() == right.size()) {
        return difference;
    }
    return left.size() < right.size() ? -1 : 1;
}

bool EqualsIgnoringCase(const std::string& left, const std::string& right) {
    return left.size() == right.size() && CompareLetters(left, right, left.size()) == 0;
}

bool StartsWithIgnoringCase(const std::string& text, const std::string& prefix) {
    return text.size() >= prefix.size() && CompareLetters(text, prefix, prefix.size()) == 0;
}

}  // namespace vagent
