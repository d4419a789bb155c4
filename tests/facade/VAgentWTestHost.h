#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "fakes/FakeCom.h"
#include "fakes/FakeComputerNames.h"
#include "fakes/FakeDirectory.h"
#include "fakes/FakeLocalAccounts.h"
#include "fakes/FakeServiceManager.h"
#include "fakes/FakeSpooler.h"
#include "fakes/FakeSystemMessages.h"
#include "fakes/FakeTerminalServices.h"
#include "fakes/FakeVersionInfo.h"
#include "helpers/LogCapture.h"
#include "os/Com.h"
#include "os/ComputerNames.h"
#include "os/Directory.h"
#include "os/Facilities.h"
#include "os/NetApi.h"
#include "os/ServiceManager.h"
#include "os/Spooler.h"
#include "os/SystemMessages.h"
#include "os/TerminalServices.h"
#include "os/VersionInfo.h"

namespace vagent::test {

// The in-memory Windows host of the wide facade's tests: every facility a
// call reaches is a fake, for this process and the in-process service alike,
// and the log is read back. The process-wide root site is put back at the
// end.
class VAgentWTestHost {
public:
    VAgentWTestHost();
    ~VAgentWTestHost();
    VAgentWTestHost(const VAgentWTestHost&) = delete;
    VAgentWTestHost& operator=(const VAgentWTestHost&) = delete;

    FakeCom com;
    FakeComputerNames names;
    FakeVersionInfo version;
    FakeLocalAccounts accounts;
    FakeDirectory directory;
    FakeTerminalServices sessions;
    FakeSpooler spooler;
    FakeServiceManager services;
    FakeSystemMessages messages;
    LogCapture log;

private:
    os::ScopedFacility<os::Com> comScope_{com};
    os::ScopedFacility<os::ComputerNames> namesScope_{names};
    os::ScopedFacility<os::VersionInfo> versionScope_{version};
    os::ScopedFacility<os::NetApi> accountsScope_{accounts};
    os::ScopedFacility<os::Directory> directoryScope_{directory};
    os::ScopedFacility<os::TerminalServices> sessionsScope_{sessions};
    os::ScopedFacility<os::Spooler> spoolerScope_{spooler};
    os::ScopedFacility<os::ServiceManager> servicesScope_{services};
    os::ScopedFacility<os::SystemMessages> messagesScope_{messages};
    std::string savedRootSite_;
};

// The bytes a text takes in the active code page of this build's system:
// UTF-8 on POSIX systems, Windows-1252 under the test prefix's Wine.
std::string ActiveCodePage(const std::string& utf8, const std::string& windows1252);

}  // namespace vagent::test
