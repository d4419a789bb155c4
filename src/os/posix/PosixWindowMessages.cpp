#include "os/WindowMessages.h"

#include "os/Status.h"

namespace vagent::os {
namespace {

class PosixWindowMessages final : public WindowMessages {
public:
    std::uint32_t Post(WindowHandle /*window*/, std::uint32_t /*message*/,
                       std::uintptr_t /*wParam*/, std::intptr_t /*lParam*/) override {
        return kNotSupported;
    }
};

}  // namespace

template <>
WindowMessages& RealFacility<WindowMessages>() {
    static PosixWindowMessages real;
    return real;
}

}  // namespace vagent::os
