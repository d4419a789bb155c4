#include "platform/TextEncoding.h"

#include <iconv.h>

#include <cerrno>
#include <string>

namespace vagentctl::platform {
namespace {

const char kReplacement[] = "\xEF\xBF\xBD";

std::string CharsetOf(unsigned codePage) {
    return codePage == kUtf8CodePage ? std::string("UTF-8") : "CP" + std::to_string(codePage);
}

// One iconv descriptor for one conversion, closed on every way out.
class Converter {
public:
    Converter(const std::string& to, const std::string& from)
        : descriptor_(iconv_open(to.c_str(), from.c_str())) {}
    ~Converter() {
        if (Usable()) {
            iconv_close(descriptor_);
        }
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool Usable() const { return descriptor_ != reinterpret_cast<iconv_t>(-1); }

    // Converts as much as it can; stops at the first byte it cannot take
    // and leaves `input` and `left` there.
    bool Convert(char*& input, std::size_t& left, std::string& output) {
        char buffer[256];
        while (left > 0) {
            char* out = buffer;
            std::size_t room = sizeof buffer;
            const std::size_t result = iconv(descriptor_, &input, &left, &out, &room);
            output.append(buffer, static_cast<std::size_t>(out - buffer));
            if (result == static_cast<std::size_t>(-1) && errno != E2BIG) {
                return false;
            }
        }
        return true;
    }

private:
    iconv_t descriptor_;
};

bool ConvertWhole(const std::string& to, const std::string& from, const std::string& text,
                  std::string& output) {
    Converter converter(to, from);
    if (!converter.Usable()) {
        return false;
    }
    std::string input = text;
    char* cursor = input.data();
    std::size_t left = input.size();
    output.clear();
    return converter.Convert(cursor, left, output);
}

}  // namespace

unsigned SystemCodePage() {
    return kUtf8CodePage;
}

bool EncodeInCodePage(const std::string& utf8, unsigned codePage, std::string& encoded) {
    return ConvertWhole(CharsetOf(codePage), "UTF-8", utf8, encoded);
}

std::string DecodeFromCodePage(const std::string& bytes, unsigned codePage) {
    Converter converter("UTF-8", CharsetOf(codePage));
    if (!converter.Usable()) {
        return bytes;
    }
    std::string input = bytes;
    char* cursor = input.data();
    std::size_t left = input.size();
    std::string output;
    while (!converter.Convert(cursor, left, output)) {
        output += kReplacement;
        ++cursor;
        --left;
    }
    return output;
}

bool Utf8ToWide(const std::string& utf8, std::wstring& wide) {
    std::string bytes;
    if (!ConvertWhole("WCHAR_T", "UTF-8", utf8, bytes)) {
        return false;
    }
    wide.assign(reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / sizeof(wchar_t));
    return true;
}

std::string WideToUtf8(const std::wstring& wide) {
    const std::string bytes(reinterpret_cast<const char*>(wide.data()),
                            wide.size() * sizeof(wchar_t));
    std::string utf8;
    ConvertWhole("UTF-8", "WCHAR_T", bytes, utf8);
    return utf8;
}

}  // namespace vagentctl::platform
