#pragma once

#include <string>

namespace vagentctl {

// Where and how one agent object works: the service's dotted address and
// port (an empty address runs every operation in this process), the work
// environment, the directory root when one was given, and the code page in
// which the target's text travels.
struct AgentTarget {
    std::string address;
    std::string port;
    int workEnv = 0;
    bool hasRootSite = false;
    std::string rootSite;
    unsigned codePage = 1252;
};

}  // namespace vagentctl
