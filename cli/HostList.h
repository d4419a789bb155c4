#pragma once

#include <string>
#include <vector>

namespace vagentctl {

// One host as the administrator named it, and where to reach it.
struct HostSpec {
    std::string label;  // as given, for the output
    std::string name;   // name or dotted address; empty: this machine
    std::string port;
};

// "name" or "name:port"; a port that is not 1 to 65535 is a usage error.
HostSpec ParseHostSpec(const std::string& text, const std::string& defaultPort);

// The hosts of the command line followed by those of the hosts file (one
// per line; blank lines and '#' comments are skipped). A file that cannot
// be read is a usage error.
std::vector<HostSpec> CollectHosts(const std::vector<std::string>& given,
                                   const std::string& hostsFile, const std::string& defaultPort);

// A port is decimal text of 1 to 65535.
bool IsPort(const std::string& text);

}  // namespace vagentctl
