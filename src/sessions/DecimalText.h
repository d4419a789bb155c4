#pragma once

#include <cstdint>
#include <string>

namespace vagent {

// The C runtime's text-to-integer conversion as a 32-bit Windows process
// does it: leading blanks, an optional sign, decimal digits up to the first
// other character; 0 when there are none; clamped to the 32-bit range.
std::int32_t DecimalValue(const std::string& text);

}  // namespace vagent
