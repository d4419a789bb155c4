#pragma once

#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <vector>

#include "fakes/FakeHostFacts.h"
#include "os/HostFacts.h"
#include "service/EndToEndHost.h"
#include "service/EndToEndService.h"

namespace vagent::test {

// What one run of vagentctl's entry printed and returned.
struct CliRun {
    int status = -1;
    std::string out;
    std::string err;

    // The JSON objects of standard output, one per line.
    std::vector<nlohmann::json> JsonLines() const;
};

// Runs vagentctl's entry in this process with `input` as standard input.
CliRun RunCli(const std::vector<std::string>& arguments, const std::string& input = "");

// vagentctl against an agent service in this process, on the in-memory
// Windows host.
class CliAgainstService {
public:
    CliAgainstService();

    std::string HostArgument() const;
    // The arguments with -H naming the service in front.
    CliRun Remote(std::vector<std::string> arguments, const std::string& input = "") const;
    // The same with --json; the one object it printed.
    nlohmann::json RemoteJson(std::vector<std::string> arguments,
                              const std::string& input = "") const;

    EndToEndHost host;
    FakeHostFacts facts;
    // Installed before the service starts, removed after it stops.
    os::ScopedFacility<os::HostFacts> factsScope{facts};
    std::unique_ptr<EndToEndService> service;
};

// A port on 127.0.0.1 that refuses connections: one a service had and gave
// up.
std::string RefusedPort();

}  // namespace vagent::test
