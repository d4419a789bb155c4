#pragma once

#include <memory>

#include "AgentDriver.h"
#include "AgentTarget.h"

namespace vagentctl::platform {

// The facade this system's programs use: the narrow one with text in the
// target's code page where text is UTF-8, the wide one on Windows.
std::unique_ptr<AgentDriver> MakeAgentDriver(const AgentTarget& target);

}  // namespace vagentctl::platform
