#pragma once

#include <initializer_list>
#include <cstdint>
#include <string>
#include <vector>

#include "helpers/TaskRun.h"
#include "vagent/UserRecords.h"
#include "fakes/FakeComputerNames.h"
#include "fakes/FakeDirectory.h"
#include "fakes/FakeLocalAccounts.h"
#include "helpers/LogCapture.h"
#include "os/Com.h"
#include "os/ComputerNames.h"
#include "os/Directory.h"
#include "os/NetApi.h"
#include "vagent/VTask.h"

namespace vagent::test {

// Counts COM initialisations and notes, at every uninitialisation, how many
// directory objects were still held.
class WatchedCom final : public os::Com {
public:
    explicit WatchedCom(const FakeDirectory& directory) : directory_(directory) {}
    std::int32_t Initialize() override {
        ++initializations;
        return 0;
    }
    void Uninitialize() override {
        ++uninitializations;
        liveAtUninitialize.push_back(directory_.live);
    }
    // Every initialisation matched by one uninitialisation, each made after
    // every directory object was released.
    bool Balanced() const;

    int initializations = 0;
    int uninitializations = 0;
    std::vector<int> liveAtUninitialize;

private:
    const FakeDirectory& directory_;
};

// The fake Windows host of the account tests: a machine TS01 in the DNS
// domain corp.example.com, its local account database, the domain's
// directory with the containers Users and Computers, COM, and a log that
// the test reads back. The root site is "CN=Users" for the test and put
// back afterwards.
class AccountsHost {
public:
    static constexpr const wchar_t* kDomainDn = L"DC=corp,DC=example,DC=com";
    static constexpr const char* kDomainLdap = "DC=corp, DC=example, DC=com";

    AccountsHost();
    ~AccountsHost();
    AccountsHost(const AccountsHost&) = delete;
    AccountsHost& operator=(const AccountsHost&) = delete;

    // A directory object under CN=Users: "CN=<name>,CN=Users,DC=corp,...".
    static std::wstring UsersDn(const std::wstring& name);
    FakeDirectory::Entry& AddDirectoryUser(const std::wstring& name);
    FakeDirectory::Entry& AddDirectoryGroup(const std::wstring& name);
    std::vector<std::string> Logged() const { return log.Texts(); }

    FakeLocalAccounts net;
    FakeDirectory directory;
    FakeComputerNames names;
    WatchedCom com{directory};
    LogCapture log;

private:
    os::ScopedFacility<os::NetApi> netScope_{net};
    os::ScopedFacility<os::Directory> directoryScope_{directory};
    os::ScopedFacility<os::ComputerNames> namesScope_{names};
    os::ScopedFacility<os::Com> comScope_{com};
    std::string savedRootSite_;
};

// The acknowledgement a client decodes from an answer; -1 when it cannot.
long long ClientAck(VTask& task, const TaskAnswer& answer);

// Each record as "name|comment", for comparing lists of records.
std::vector<std::string> Records(const std::vector<_VXUserInfoA>& records);

std::vector<std::string> List(std::initializer_list<const char*> items);

}  // namespace vagent::test
