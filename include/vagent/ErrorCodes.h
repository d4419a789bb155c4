#pragma once

#include <cstdint>

namespace vagent {

// The library's own error codes carry bit 29, which marks a code as not the
// system's.
enum ErrorCode : std::uint32_t {
    kErrorNotEnoughMemory = 8,
    kErrorInvalidParameter = 0xE6000001u,
    kErrorInvalidSetting = 0xE6000002u,
    kErrorNetReceiveData = 0xE6000003u,
    kErrorNetReceiveDataLength = 0xE6000004u,
};

}  // namespace vagent
