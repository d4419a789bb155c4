#pragma once

#include <cstdarg>
#include <memory>
#include <string>

#include "vagent/Export.h"

namespace vagent {

// Formats printf-style into a new buffer of exactly the needed size. Returns
// false, leaving text empty, when the buffer cannot be allocated.
bool FormatInto(std::unique_ptr<char[]>& text, const char* format, va_list arguments)
    VAGENT_PRINTF_FORMAT(2, 0);

// Formats text once more as a format string given no arguments: "%%" becomes
// "%". A conversion that would need an argument has none to take, so it is
// kept as written rather than reading whatever lies on the stack.
std::string ExpandWithoutArguments(const char* text);

}  // namespace vagent
