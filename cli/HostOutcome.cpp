#include "HostOutcome.h"

#include <utility>

#include "AgentDriver.h"

namespace vagentctl {
namespace {

// System texts end in a line break.
std::string Trimmed(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' ')) {
        text.pop_back();
    }
    return text;
}

}  // namespace

HostOutcome Succeeded(nlohmann::ordered_json result) {
    HostOutcome outcome;
    outcome.ok = true;
    outcome.result = std::move(result);
    return outcome;
}

HostOutcome Failed(std::uint32_t code, std::string text) {
    HostOutcome outcome;
    outcome.code = code;
    outcome.text = std::move(text);
    return outcome;
}

HostOutcome CallOutcome(AgentDriver& driver, bool succeeded, const std::string& operation,
                        nlohmann::ordered_json result) {
    if (succeeded) {
        return Succeeded(std::move(result));
    }
    const std::uint32_t code = driver.ErrorCode();
    if (code == 0) {
        return Failed(0, operation + " failed");
    }
    std::string text = Trimmed(driver.ErrorText());
    return Failed(code,
                  text.empty() ? operation + " failed with error " + std::to_string(code) : text);
}

}  // namespace vagentctl
