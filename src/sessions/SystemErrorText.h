#pragma once

#include <cstdint>
#include <string>

namespace vagent {

// The system's message for a status code. The text is kept process-wide:
// when the system has none for the code, the previous text is given again.
std::string SystemErrorText(std::uint32_t code);

}  // namespace vagent
