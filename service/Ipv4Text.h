#pragma once

#include <cstdint>
#include <string>

namespace vagent::service {

// IPv4 addresses as dotted text and as a number in host order (127.0.0.1 is
// 0x7F000001). Only four decimal parts of 0 to 255 are taken: no shorthand,
// no octal, no names.
bool ParseIpv4(const std::string& text, std::uint32_t& address);
std::string FormatIpv4(std::uint32_t address);

}  // namespace vagent::service
