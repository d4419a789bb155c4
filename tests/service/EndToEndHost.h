#pragma once

#include "fakes/FakeCom.h"
#include "fakes/FakeComputerNames.h"
#include "fakes/FakeDirectory.h"
#include "fakes/FakeLocalAccounts.h"
#include "fakes/FakeRegistry.h"
#include "fakes/FakeServiceManager.h"
#include "fakes/FakeSpooler.h"
#include "fakes/FakeTerminalServices.h"
#include "fakes/FakeVersionInfo.h"
#include "fakes/FakeWindowMessages.h"
#include "os/Com.h"
#include "os/ComputerNames.h"
#include "os/Directory.h"
#include "os/Facilities.h"
#include "os/NetApi.h"
#include "os/Registry.h"
#include "os/ServiceManager.h"
#include "os/Spooler.h"
#include "os/TerminalServices.h"
#include "os/VersionInfo.h"
#include "os/WindowMessages.h"

namespace vagent::test {

// The in-memory Windows host that the service serves in the end-to-end
// tests: every facility a served task reaches is a fake, installed for the
// object's lifetime. Files and sockets stay real (temporary directories and
// loopback). Made before the service starts and ended after it stops.
class EndToEndHost {
public:
    // The directory holds the domain corp.example.com (the fake computer
    // names' DNS domain) with its Users and Staff containers.
    EndToEndHost();
    EndToEndHost(const EndToEndHost&) = delete;
    EndToEndHost& operator=(const EndToEndHost&) = delete;

    FakeCom com;
    FakeComputerNames names;
    FakeVersionInfo version;
    FakeLocalAccounts accounts;
    FakeDirectory directory;
    FakeTerminalServices sessions;
    FakeRegistry registry;
    FakeSpooler spooler;
    FakeServiceManager services;
    FakeWindowMessages windows;

private:
    os::ScopedFacility<os::Com> comScope_{com};
    os::ScopedFacility<os::ComputerNames> namesScope_{names};
    os::ScopedFacility<os::VersionInfo> versionScope_{version};
    os::ScopedFacility<os::NetApi> accountsScope_{accounts};
    os::ScopedFacility<os::Directory> directoryScope_{directory};
    os::ScopedFacility<os::TerminalServices> sessionsScope_{sessions};
    os::ScopedFacility<os::Registry> registryScope_{registry};
    os::ScopedFacility<os::Spooler> spoolerScope_{spooler};
    os::ScopedFacility<os::ServiceManager> servicesScope_{services};
    os::ScopedFacility<os::WindowMessages> windowsScope_{windows};
};

}  // namespace vagent::test
