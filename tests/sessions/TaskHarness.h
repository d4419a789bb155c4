#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "fakes/FakeClock.h"
#include "fakes/FakeHostFacts.h"
#include "fakes/FakeRegistry.h"
#include "fakes/FakeSpooler.h"
#include "fakes/FakeSystemMessages.h"
#include "fakes/FakeTerminalServices.h"
#include "helpers/TaskRun.h"
#include "helpers/TempDir.h"
#include "os/Facilities.h"
#include "vagent/TaskRequest.h"
#include "vagent/VTask.h"

namespace vagent::test {

// The Windows host the session tasks run on: a terminal server, a clock, a
// message table, a registry, a spooler, and the library and the executable
// in two different directories of a fresh temporary directory.
class FakeSessionHost {
public:
    FakeSessionHost();

    std::string LibraryConfig() const;
    std::string ExecutableConfig() const;
    std::filesystem::path LibraryConfigFile() const {
        return directory.Path() / "lib" / "Config.ini";
    }
    std::filesystem::path ExecutableConfigFile() const {
        return directory.Path() / "bin" / "Config.ini";
    }

    TempDir directory;
    FakeTerminalServices server;
    FakeClock clock;
    FakeSystemMessages messages;
    FakeRegistry registry;
    FakeSpooler spooler;
    FakeHostFacts host;

private:
    os::ScopedFacility<os::TerminalServices> serverScope_{server};
    os::ScopedFacility<os::Clock> clockScope_{clock};
    os::ScopedFacility<os::SystemMessages> messagesScope_{messages};
    os::ScopedFacility<os::Registry> registryScope_{registry};
    os::ScopedFacility<os::Spooler> spoolerScope_{spooler};
    os::ScopedFacility<os::HostFacts> hostScope_{host};
};

}  // namespace vagent::test
