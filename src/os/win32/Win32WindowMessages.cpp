#include "os/WindowMessages.h"

#include "os/win32/WindowsHeaders.h"

namespace vagent::os {
namespace {

class Win32WindowMessages final : public WindowMessages {
public:
    std::uint32_t Post(WindowHandle window, std::uint32_t message, std::uintptr_t wParam,
                       std::intptr_t lParam) override {
        return PostMessageA(reinterpret_cast<HWND>(window), message, wParam, lParam)
                   ? 0
                   : GetLastError();
    }
};

}  // namespace

template <>
WindowMessages& RealFacility<WindowMessages>() {
    static Win32WindowMessages real;
    return real;
}

}  // namespace vagent::os
