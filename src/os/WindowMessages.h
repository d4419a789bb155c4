#pragma once

#include <cstdint>

#include "os/Facilities.h"

namespace vagent::os {

// A window as the system names it.
using WindowHandle = std::uintptr_t;

// Messages to windows.
class WindowMessages {
public:
    virtual ~WindowMessages() = default;
    // Mirrors PostMessageA: returns 0 or the failure status (1400 for a
    // handle that names no window).
    virtual std::uint32_t Post(WindowHandle window, std::uint32_t message, std::uintptr_t wParam,
                               std::intptr_t lParam) = 0;
};

template <>
WindowMessages& RealFacility<WindowMessages>();

}  // namespace vagent::os
