#include "platform/TextEncoding.h"

#include "platform/win32/WindowsHeaders.h"

namespace vagentctl::platform {
namespace {

std::wstring WideOf(const std::string& bytes, unsigned codePage, DWORD flags, bool& complete) {
    complete = true;
    if (bytes.empty()) {
        return std::wstring();
    }
    const int size = static_cast<int>(bytes.size());
    const int needed = MultiByteToWideChar(codePage, flags, bytes.data(), size, nullptr, 0);
    if (needed <= 0) {
        complete = false;
        return std::wstring();
    }
    std::wstring wide(static_cast<std::size_t>(needed), L'\0');
    MultiByteToWideChar(codePage, flags, bytes.data(), size, wide.data(), needed);
    return wide;
}

}  // namespace

unsigned SystemCodePage() {
    return GetACP();
}

bool EncodeInCodePage(const std::string& utf8, unsigned codePage, std::string& encoded) {
    std::wstring wide;
    if (!Utf8ToWide(utf8, wide)) {
        return false;
    }
    encoded.clear();
    if (wide.empty()) {
        return true;
    }
    // No best-fit letters: a character either has its own place in the code
    // page or the text is refused.
    const bool utf8Target = codePage == kUtf8CodePage;
    const DWORD flags = utf8Target ? 0 : WC_NO_BEST_FIT_CHARS;
    BOOL usedDefault = FALSE;
    BOOL* defaultUsed = utf8Target ? nullptr : &usedDefault;
    const int size = static_cast<int>(wide.size());
    const int needed =
        WideCharToMultiByte(codePage, flags, wide.data(), size, nullptr, 0, nullptr, defaultUsed);
    if (needed <= 0 || usedDefault) {
        return false;
    }
    encoded.assign(static_cast<std::size_t>(needed), '\0');
    WideCharToMultiByte(codePage, flags, wide.data(), size, encoded.data(), needed, nullptr,
                        defaultUsed);
    return !usedDefault;
}

std::string DecodeFromCodePage(const std::string& bytes, unsigned codePage) {
    bool complete = false;
    return WideToUtf8(WideOf(bytes, codePage, 0, complete));
}

bool Utf8ToWide(const std::string& utf8, std::wstring& wide) {
    bool complete = false;
    wide = WideOf(utf8, CP_UTF8, MB_ERR_INVALID_CHARS, complete);
    return complete;
}

std::string WideToUtf8(const std::wstring& wide) {
    if (wide.empty()) {
        return std::string();
    }
    const int size = static_cast<int>(wide.size());
    const int needed =
        WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(needed > 0 ? needed : 0), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), needed, nullptr, nullptr);
    return utf8;
}

}  // namespace vagentctl::platform
