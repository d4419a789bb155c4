#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "os/Facilities.h"

namespace vagent::os {

struct LocalTime {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int milliseconds = 0;
};

enum class Module {
    Executable,  // the program that hosts the library
    Library,     // the library's own module
};

// Facts about the machine and the running process.
class HostFacts {
public:
    virtual ~HostFacts() = default;
    // Mirrors GetModuleFileNameA: the module's full path with backslash
    // separators; returns 0 or the failure status.
    virtual std::uint32_t ModuleFileName(Module module, std::string& path) = 0;
    // Mirrors GetLocalTime.
    virtual LocalTime CurrentLocalTime() = 0;
    // Mirrors GetAdaptersInfo: every IPv4 address of every adapter, in the
    // order the adapters and their address lists give; returns 0 or the
    // failure status.
    virtual std::uint32_t AdapterIPv4Addresses(std::vector<std::string>& addresses) = 0;
};

template <>
HostFacts& RealFacility<HostFacts>();

}  // namespace vagent::os
