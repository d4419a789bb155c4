#pragma once

#include <map>
#include <string>

#include "os/Environment.h"

namespace vagent::test {

// Environment variables that the test sets; a missing one answers 203.
class FakeEnvironment final : public os::Environment {
public:
    std::uint32_t Value(const std::string& name, std::string& value) override {
        const auto found = variables.find(name);
        if (found == variables.end()) {
            return kNotFound;
        }
        value = found->second;
        return 0;
    }

    static constexpr std::uint32_t kNotFound = 203;
    std::map<std::string, std::string> variables;
};

}  // namespace vagent::test
