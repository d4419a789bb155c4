#include "support/FormatText.h"

#include <cstdio>
#include <cstring>
#include <new>

namespace vagent {
namespace {

bool IsFlag(char c) {
    return std::strchr("-+ #0'", c) != nullptr;
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLengthModifier(char c) {
    return std::strchr("hlLqjztI", c) != nullptr;
}

// The end of the conversion that starts at text[start] ('%'), or npos when
// the text ends before a conversion letter.
std::size_t ConversionEnd(const std::string& text, std::size_t start) {
    std::size_t i = start + 1;
    while (i < text.size() && IsFlag(text[i])) {
        ++i;
    }
    while (i < text.size() && (IsDigit(text[i]) || text[i] == '*' || text[i] == '.')) {
        ++i;
    }
    while (i < text.size() && (IsLengthModifier(text[i]) || IsDigit(text[i]))) {
        ++i;
    }
    return i < text.size() ? i : std::string::npos;
}

}  // namespace

bool FormatInto(std::unique_ptr<char[]>& text, const char* format, va_list arguments) {
    va_list measure;
    va_copy(measure, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    text.reset();
    if (length < 0) {
        return false;
    }
    const std::size_t size = static_cast<std::size_t>(length) + 1;
    text.reset(new (std::nothrow) char[size]);
    if (!text) {
        return false;
    }
    std::vsnprintf(text.get(), size, format, arguments);
    return true;
}

std::string ExpandWithoutArguments(const char* text) {
    const std::string source = text;
    std::string result;
    result.reserve(source.size());
    for (std::size_t i = 0; i < source.size(); ++i) {
        if (source[i] != '%') {
            result.push_back(source[i]);
            continue;
        }
        if (i + 1 < source.size() && source[i + 1] == '%') {
            result.push_back('%');
            ++i;
            continue;
        }
        const std::size_t end = ConversionEnd(source, i);
        const std::size_t stop = end == std::string::npos ? source.size() - 1 : end;
        result.append(source, i, stop - i + 1);
        i = stop;
    }
    return result;
}

}  // namespace vagent
