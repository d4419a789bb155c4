#include "platform/AgentDrivers.h"

#include "FacadeDriver.h"
#include "WideCodec.h"
#include "vagent/VAgentW.h"

namespace vagentctl::platform {

std::unique_ptr<AgentDriver> MakeAgentDriver(const AgentTarget& target) {
    return std::make_unique<FacadeDriver<VAgentW, WideCodec>>(target);
}

}  // namespace vagentctl::platform
