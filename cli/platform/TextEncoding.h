#pragma once

#include <string>

namespace vagentctl::platform {

// The code page number that means UTF-8.
constexpr unsigned kUtf8CodePage = 65001;

// The code page of this system's narrow text: the ANSI code page on
// Windows, UTF-8 elsewhere.
unsigned SystemCodePage();

// The bytes of UTF-8 text in a Windows code page; false when a character has
// no place in that code page or the code page is unknown here.
bool EncodeInCodePage(const std::string& utf8, unsigned codePage, std::string& encoded);

// UTF-8 text of bytes in a Windows code page; a byte the code page does not
// define becomes U+FFFD, so that whatever a server sends can be shown.
std::string DecodeFromCodePage(const std::string& bytes, unsigned codePage);

// Wide text of the system's width (UTF-16 on Windows); false for malformed
// UTF-8.
bool Utf8ToWide(const std::string& utf8, std::wstring& wide);
std::string WideToUtf8(const std::wstring& wide);

}  // namespace vagentctl::platform
