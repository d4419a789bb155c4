#pragma once

#include <cstdint>
#include <functional>

#include "AgentDriver.h"
#include "ConsoleStreams.h"
#include "GlobalOptions.h"
#include "HostOutcome.h"

namespace vagentctl {

// What the chosen command does on each host.
using HostOperation = std::function<HostOutcome(AgentDriver&)>;

// What the command line chose, filled by the chosen command once its
// arguments are parsed.
struct CommandContext {
    CommandContext(ConsoleStreams& streams, const GlobalOptions& globalOptions)
        : console(streams), options(globalOptions) {}

    ConsoleStreams& console;
    // Filled in by the time a command is chosen.
    const GlobalOptions& options;
    HostOperation operation;
    // A transfer shows progress; for an upload its size is known beforehand.
    bool transfers = false;
    std::uint64_t expectedBytes = 0;
    std::uint64_t expectedFiles = 0;
    // Some operations only make sense against a service, some only here.
    bool needsHost = false;
    bool thisMachineOnly = false;
};

}  // namespace vagentctl
