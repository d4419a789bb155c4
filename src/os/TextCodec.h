#pragma once

#include <cstdint>
#include <string>

#include "os/Facilities.h"

namespace vagent::os {

// Conversion between the active ANSI code page and wide text.
class TextCodec {
public:
    virtual ~TextCodec() = default;
    // Mirrors MultiByteToWideChar(CP_ACP): returns 0 or the failure status.
    virtual std::uint32_t NarrowToWide(const std::string& narrow, std::wstring& wide) = 0;
    // Mirrors WideCharToMultiByte(CP_ACP): returns 0 or the failure status.
    virtual std::uint32_t WideToNarrow(const std::wstring& wide, std::string& narrow) = 0;
};

template <>
TextCodec& RealFacility<TextCodec>();

}  // namespace vagent::os
