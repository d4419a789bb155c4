#include "platform/AgentDrivers.h"

#include "FacadeDriver.h"
#include "NarrowCodec.h"
#include "vagent/VAgent.h"

namespace vagentctl::platform {

std::unique_ptr<AgentDriver> MakeAgentDriver(const AgentTarget& target) {
    return std::make_unique<FacadeDriver<VAgent, NarrowCodec>>(target);
}

}  // namespace vagentctl::platform
