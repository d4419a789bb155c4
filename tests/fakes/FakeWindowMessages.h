#pragma once

#include <vector>

#include "os/WindowMessages.h"

namespace vagent::test {

// Records every posted message.
class FakeWindowMessages final : public os::WindowMessages {
public:
    struct Posted {
        os::WindowHandle window;
        std::uint32_t message;
        std::uintptr_t wParam;
        std::intptr_t lParam;
    };

    std::uint32_t Post(os::WindowHandle window, std::uint32_t message, std::uintptr_t wParam,
                       std::intptr_t lParam) override {
        posted.push_back(Posted{window, message, wParam, lParam});
        return 0;
    }

    std::vector<Posted> posted;
};

}  // namespace vagent::test
