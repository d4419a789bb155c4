#pragma once

#include <cstdint>
#include <string>

namespace vagent::facade {

// The text of an error code as the agent reports it: codes with bit 29 set
// are the library's own and read from its table ("Unknow Error." for one it
// does not know); every other code is the system's, read from its message
// table (empty when the system has no text).
std::string ErrorText(std::uint32_t code);

}  // namespace vagent::facade
