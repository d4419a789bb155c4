#include "os/posix/PosixTextCodec.h"

namespace vagent::os {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Length of the sequence that a lead byte starts, or 0 for a byte that
// cannot start one.
int SequenceLength(unsigned char lead) {
    if (lead < 0x80) {
        return 1;
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
        return 2;
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        return 3;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        return 4;
    }
    return 0;
}

bool IsContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

// Decodes one sequence at text[i]; an ill-formed one yields the replacement
// character and consumes one byte, as the Windows conversion does.
char32_t DecodeOne(const std::string& text, std::size_t& i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const int length = SequenceLength(lead);
    if (length == 0 || i + static_cast<std::size_t>(length) > text.size()) {
        ++i;
        return length == 1 ? lead : kReplacement;
    }
    if (length == 1) {
        ++i;
        return lead;
    }
    char32_t code = lead & (0xFF >> (length + 1));
    for (int k = 1; k < length; ++k) {
        const auto byte = static_cast<unsigned char>(text[i + static_cast<std::size_t>(k)]);
        if (!IsContinuation(byte)) {
            ++i;
            return kReplacement;
        }
        code = (code << 6) | (byte & 0x3F);
    }
    static const char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (code < kSmallest[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
        ++i;
        return kReplacement;
    }
    i += static_cast<std::size_t>(length);
    return code;
}

void AppendWide(std::wstring& wide, char32_t code) {
    if constexpr (sizeof(wchar_t) == 2) {
        if (code >= 0x10000) {
            code -= 0x10000;
            wide.push_back(static_cast<wchar_t>(0xD800 + (code >> 10)));
            wide.push_back(static_cast<wchar_t>(0xDC00 + (code & 0x3FF)));
            return;
        }
    }
    wide.push_back(static_cast<wchar_t>(code));
}

void AppendUtf8(std::string& narrow, char32_t code) {
    if (code < 0x80) {
        narrow.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
        narrow.push_back(static_cast<char>(0xC0 | (code >> 6)));
        narrow.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
        narrow.push_back(static_cast<char>(0xE0 | (code >> 12)));
        narrow.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        narrow.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
        narrow.push_back(static_cast<char>(0xF0 | (code >> 18)));
        narrow.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
        narrow.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        narrow.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
}

}  // namespace

std::uint32_t PosixTextCodec::NarrowToWide(const std::string& narrow, std::wstring& wide) {
    wide.clear();
    for (std::size_t i = 0; i < narrow.size();) {
        AppendWide(wide, DecodeOne(narrow, i));
    }
    return 0;
}

std::uint32_t PosixTextCodec::WideToNarrow(const std::wstring& wide, std::string& narrow) {
    narrow.clear();
    for (std::size_t i = 0; i < wide.size(); ++i) {
        auto code = static_cast<char32_t>(wide[i]);
        if (sizeof(wchar_t) == 2 && code >= 0xD800 && code <= 0xDBFF && i + 1 < wide.size()) {
            const auto low = static_cast<char32_t>(wide[i + 1]);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
                ++i;
            }
        }
        // Text that has no narrow form becomes the default character, as on Windows.
        if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
            code = '?';
        }
        AppendUtf8(narrow, code);
    }
    return 0;
}

template <>
TextCodec& RealFacility<TextCodec>() {
    static PosixTextCodec real;
    return real;
}

}  // namespace vagent::os
