#pragma once

#include "os/TextCodec.h"

namespace vagent::os {

class Win32TextCodec final : public TextCodec {
public:
    std::uint32_t NarrowToWide(const std::string& narrow, std::wstring& wide) override;
    std::uint32_t WideToNarrow(const std::wstring& wide, std::string& narrow) override;
};

}  // namespace vagent::os
