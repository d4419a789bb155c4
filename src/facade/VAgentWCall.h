#pragma once

#include <new>

#include "vagent/ErrorCodes.h"
#include "vagent/VAgent.h"
#include "vagent/VAgentW.h"

// Every wide operation runs through here: the narrow agent is rebuilt from
// this object's settings for each call, so a setting changed between calls
// always takes effect, and its error code, 0 unless the call reached the
// service, replaces this object's. Running out of memory while converting
// texts ends the call like any failed allocation of the library.
template <class Operation>
int VAgentW::ThroughNarrowAgent(Operation operation) {
    try {
        VAgent agent;
        ConfigureNarrowAgent(agent);
        const int result = operation(agent);
        errorCode_ = static_cast<std::uint32_t>(agent.GetErrorCode());
        return result;
    } catch (const std::bad_alloc&) {
        errorCode_ = vagent::kErrorNotEnoughMemory;
        return 0;
    }
}
