#pragma once

#include <string>
#include <vector>

namespace vagentctl {

// The options that every command takes.
struct GlobalOptions {
    std::vector<std::string> hosts;
    std::string hostsFile;
    std::string port = "1234";
    int workEnv = 0;
    std::string rootSite;
    bool json = false;
    unsigned parallel = 32;
    unsigned codePage = 1252;
    bool quiet = false;
};

}  // namespace vagentctl
