#pragma once

#include <cstdint>
#include <string>

#include "os/Facilities.h"

namespace vagent::os {

// Private-profile files: sections in brackets holding key=value lines, the
// names compared without regard to case.
class ProfileFiles {
public:
    virtual ~ProfileFiles() = default;
    // Mirrors GetPrivateProfileIntA: the decimal number at the start of the
    // key's value (0 when it starts with none), or defaultValue when the file,
    // the section or the key is missing.
    virtual std::uint32_t ReadInt(const std::string& section, const std::string& key,
                                  std::int32_t defaultValue, const std::string& path) = 0;
    // Mirrors WritePrivateProfileStringA: replaces the key's value, adding the
    // key, the section and the file as needed; returns 0 or the failure
    // status.
    virtual std::uint32_t WriteString(const std::string& section, const std::string& key,
                                      const std::string& value, const std::string& path) = 0;
};

template <>
ProfileFiles& RealFacility<ProfileFiles>();

}  // namespace vagent::os
