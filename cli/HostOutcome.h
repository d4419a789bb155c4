#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>

namespace vagentctl {

class AgentDriver;

// What one command did on one host: its result, or the error code and text.
struct HostOutcome {
    bool ok = false;
    nlohmann::ordered_json result;
    std::uint32_t code = 0;
    std::string text;
};

HostOutcome Succeeded(nlohmann::ordered_json result);
HostOutcome Failed(std::uint32_t code, std::string text);
// The outcome of a facade call: the result when it succeeded, otherwise the
// agent's error code with its text, or, when the facade kept no code, the
// operation's name.
HostOutcome CallOutcome(AgentDriver& driver, bool succeeded, const std::string& operation,
                        nlohmann::ordered_json result);

}  // namespace vagentctl
