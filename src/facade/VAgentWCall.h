#pragma once

#include "facade/Shield.h"
#include "vagent/VAgent.h"
#include "vagent/VAgentW.h"

// Every wide operation runs through here: the narrow agent is rebuilt from
// this object's settings for each call, so a setting changed between calls
// always takes effect, and its error code, 0 unless the call reached the
// service, replaces this object's.
template <class Operation>
int VAgentW::ThroughNarrowAgent(Operation operation) {
    return vagent::facade::Shielded(0, &errorCode_, [&] {
        VAgent agent;
        ConfigureNarrowAgent(agent);
        const int result = operation(agent);
        errorCode_ = static_cast<std::uint32_t>(agent.GetErrorCode());
        return result;
    });
}
