#pragma once

#include <cstdint>
#include <string>

#include "os/Facilities.h"

namespace vagent::os {

// The name formats of GetComputerNameEx, by their Windows numbers.
enum ComputerNameFormat : std::uint32_t {
    kComputerNameNetBIOS = 0,
    kComputerNameDnsHostname = 1,
    kComputerNameDnsDomain = 2,
    kComputerNameDnsFullyQualified = 3,
    kComputerNamePhysicalNetBIOS = 4,
    kComputerNamePhysicalDnsHostname = 5,
    kComputerNamePhysicalDnsDomain = 6,
    kComputerNamePhysicalDnsFullyQualified = 7,
};

// The computer's names.
class ComputerNames {
public:
    virtual ~ComputerNames() = default;
    // Mirrors GetComputerNameExA. On entry size is the buffer's capacity in
    // bytes (buffer may be null with size 0 to ask for the size). Returns 0
    // with the name copied, zero-terminated, and size set to its length
    // without the zero; or a failure status: 234 (more data) with size set to
    // the capacity needed including the zero when the buffer is too small.
    virtual std::uint32_t ComputerNameEx(std::uint32_t format, char* buffer,
                                         std::uint32_t& size) = 0;
};

template <>
ComputerNames& RealFacility<ComputerNames>();

}  // namespace vagent::os
