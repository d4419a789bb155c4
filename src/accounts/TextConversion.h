#pragma once

#include <string>
#include <vector>

// Conversions in the active ANSI code page. Each returns the converted
// length with its terminator; 0 when the text does not convert (out becomes
// empty, as the zero-filled buffer reads) or when the buffer is refused (out
// untouched). A text is taken up to its first zero, as the system's
// conversions read it.
int string2wstring(const std::string& in, std::wstring& out);
int wstring2string(const std::wstring& in, std::string& out);

// The same conversions with the caller's own log line for a refused buffer:
// "<function> : new [<count>] bytes<suffix>". The wide facade exports them
// under texts of its own.
int NarrowToWideLogging(const std::string& in, std::wstring& out, const char* function,
                        const char* suffix);
int WideToNarrowLogging(const std::wstring& in, std::string& out, const char* function,
                        const char* suffix);

// A whole list converted to wide, element by element.
std::vector<std::wstring> WideList(const std::vector<std::string>& in);
// A text converted to wide, empty when it does not convert.
std::wstring Wide(const std::string& in);
// A text converted to narrow, empty when it does not convert.
std::string Narrow(const std::wstring& in);
