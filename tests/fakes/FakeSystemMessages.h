#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "os/SystemMessages.h"

namespace vagent::test {

// A message table that knows the texts the test gives it; other codes fail
// with 317 as the system's table does.
class FakeSystemMessages final : public os::SystemMessages {
public:
    std::uint32_t MessageText(std::uint32_t code, std::string& text) override {
        const auto found = texts.find(code);
        if (found == texts.end()) {
            return 317;
        }
        text = found->second;
        return 0;
    }

    std::map<std::uint32_t, std::string> texts;
};

}  // namespace vagent::test
