#pragma once

#include "facade/Shield.h"
#include "vagent/VAgent.h"
#include "vagent/VAgentW.h"

// Every wide operation runs through here: the narrow agent is rebuilt from
// this object's settings for each call, so a setting changed between calls
// always takes effect, and its error code, 0 unless the call reached the
// service, replaces this object's. Whatever runs out of memory on the way,
// the temporary itself included, ends in the guard with code 8 and the
// method's own failure value.
template <class Operation>
int VAgentW::ThroughNarrowAgent(Operation operation, int failure) {
    return vagent::facade::Shielded(failure, &errorCode_, [&] {
        const std::unique_ptr<VAgent> agent = NarrowAgent();
        const int result = operation(*agent);
        errorCode_ = static_cast<std::uint32_t>(agent->GetErrorCode());
        return result;
    });
}
