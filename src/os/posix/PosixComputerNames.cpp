#include "os/posix/PosixComputerNames.h"

#include <unistd.h>

#include <cctype>
#include <climits>
#include <cstring>

#include "os/Status.h"

namespace vagent::os {
namespace {

std::string HostName() {
    char name[HOST_NAME_MAX + 1] = {};
    if (gethostname(name, sizeof name - 1) != 0) {
        return std::string();
    }
    return name;
}

// The first label of the host name, upper-cased as NetBIOS names are.
std::string NetBIOSName(const std::string& host) {
    std::string name = host.substr(0, host.find('.'));
    for (char& c : name) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return name;
}

bool NameFor(std::uint32_t format, std::string& name) {
    const std::string host = HostName();
    switch (format) {
        case kComputerNameNetBIOS:
        case kComputerNamePhysicalNetBIOS:
            name = NetBIOSName(host);
            return true;
        case kComputerNameDnsHostname:
        case kComputerNamePhysicalDnsHostname:
            name = host.substr(0, host.find('.'));
            return true;
        case kComputerNameDnsDomain:
        case kComputerNamePhysicalDnsDomain: {
            const std::size_t dot = host.find('.');
            name = dot == std::string::npos ? std::string() : host.substr(dot + 1);
            return true;
        }
        case kComputerNameDnsFullyQualified:
        case kComputerNamePhysicalDnsFullyQualified:
            name = host;
            return true;
        default:
            return false;
    }
}

}  // namespace

std::uint32_t PosixComputerNames::ComputerNameEx(std::uint32_t format, char* buffer,
                                                 std::uint32_t& size) {
    std::string name;
    if (!NameFor(format, name)) {
        return kInvalidParameter;
    }
    const auto needed = static_cast<std::uint32_t>(name.size() + 1);
    if (buffer == nullptr || size < needed) {
        size = needed;
        return kMoreData;
    }
    std::memcpy(buffer, name.c_str(), needed);
    size = needed - 1;
    return 0;
}

template <>
ComputerNames& RealFacility<ComputerNames>() {
    static PosixComputerNames real;
    return real;
}

}  // namespace vagent::os
