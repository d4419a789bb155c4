#pragma once

#include <string>

#include "facade/VAgentRoads.h"
#include "vagent/VAgentW.h"

namespace vagent::test {

// The two roads for the wide agent: the same in-memory host and in-process
// service as the narrow agent's, with wide agents addressed the same way.
class VAgentWRoads : public VAgentRoads {
protected:
    VAgentW WideAgent(int workEnv);
    // A domain agent whose own root site is CN=Staff. Each wide call puts its
    // root site in place itself, so nothing else needs moving.
    VAgentW WideStaffAgent();
};

// Narrow text in the active code page made wide, and back, as the wide
// agent converts it.
std::wstring WideText(const std::string& narrow);
std::string NarrowText(const std::wstring& wide);

}  // namespace vagent::test
