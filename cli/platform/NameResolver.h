#pragma once

#include <string>

namespace vagentctl::platform {

// The first IPv4 address of a host name or dotted address, as dotted text;
// false with the system's reason in `problem` when there is none.
bool ResolveIpv4(const std::string& name, std::string& dotted, std::string& problem);

}  // namespace vagentctl::platform
