#include "accounts/TextConversion.h"

#include <algorithm>
#include <new>

#include "os/TextCodec.h"
#include "vagent/DllLog.h"

namespace {

// Hands the converted text out through a zero-filled buffer of the size the
// conversion asked for, terminator included; the buffer is the one
// allocation whose failure the caller sees, logged with its element count.
template <class Char>
int HandOutThroughBuffer(const std::basic_string<Char>& converted, const char* function,
                         const char* suffix, std::basic_string<Char>& out) {
    const std::size_t count = converted.size() + 1;
    Char* buffer = new (std::nothrow) Char[count];
    if (buffer == nullptr) {
        DllLogPrintf("%s : new [%d] bytes%s", function, static_cast<int>(count), suffix);
        return 0;
    }
    std::fill(buffer, buffer + count, Char());
    std::copy(converted.begin(), converted.end(), buffer);
    out = buffer;
    delete[] buffer;
    return static_cast<int>(count);
}

std::string UpToFirstZero(const std::string& text) {
    return text.substr(0, text.find('\0'));
}

std::wstring UpToFirstZero(const std::wstring& text) {
    return text.substr(0, text.find(L'\0'));
}

}  // namespace

int string2wstring(const std::string& in, std::wstring& out) {
    return NarrowToWideLogging(in, out, "string2wstring", " failed!");
}

int wstring2string(const std::wstring& in, std::string& out) {
    return WideToNarrowLogging(in, out, "wstring2string", " failed!");
}

int NarrowToWideLogging(const std::string& in, std::wstring& out, const char* function,
                        const char* suffix) {
    std::wstring converted;
    if (vagent::os::Installed<vagent::os::TextCodec>().NarrowToWide(UpToFirstZero(in), converted) !=
        0) {
        out.clear();
        return 0;
    }
    return HandOutThroughBuffer(converted, function, suffix, out);
}

int WideToNarrowLogging(const std::wstring& in, std::string& out, const char* function,
                        const char* suffix) {
    std::string converted;
    if (vagent::os::Installed<vagent::os::TextCodec>().WideToNarrow(UpToFirstZero(in), converted) !=
        0) {
        out.clear();
        return 0;
    }
    return HandOutThroughBuffer(converted, function, suffix, out);
}

std::vector<std::wstring> WideList(const std::vector<std::string>& in) {
    std::vector<std::wstring> out;
    out.reserve(in.size());
    for (const std::string& text : in) {
        out.push_back(Wide(text));
    }
    return out;
}

std::wstring Wide(const std::string& in) {
    std::wstring out;
    string2wstring(in, out);
    return out;
}

std::string Narrow(const std::wstring& in) {
    std::string out;
    wstring2string(in, out);
    return out;
}
