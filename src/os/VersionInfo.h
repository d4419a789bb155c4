#pragma once

#include <cstdint>

#include "os/Facilities.h"

namespace vagent::os {

// What GetVersionExA reports of the operating system.
struct VersionRecord {
    std::uint32_t majorVersion = 0;
    std::uint32_t minorVersion = 0;
    std::uint32_t buildNumber = 0;
    std::uint32_t platformId = 0;
};

// The operating system's version.
class VersionInfo {
public:
    virtual ~VersionInfo() = default;
    // Mirrors GetVersionExA with the 148-byte record: returns 0 or the failure
    // status.
    virtual std::uint32_t Version(VersionRecord& record) = 0;
};

template <>
VersionInfo& RealFacility<VersionInfo>();

}  // namespace vagent::os
