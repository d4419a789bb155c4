#pragma once

#include <cstdint>
#include <string>
#include <vector>

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

// A request block as a client builds it.
std::vector<std::uint8_t> ListBlock(const std::vector<std::string>& items);
std::vector<std::uint8_t> PairBlock(const std::vector<std::string>& first,
                                    const std::vector<std::string>& second);
std::vector<std::uint8_t> TripleBlock(const std::vector<std::string>& first,
                                      const std::vector<std::string>& second,
                                      const std::vector<std::string>& third);
std::vector<std::uint8_t> HeadBlock(const std::string& head, const std::vector<std::string>& rest);

// What DoTask answered: its truth value and the result block.
struct TaskAnswer {
    int truth = -1;
    std::vector<std::uint8_t> block;
    // The block's payload, as the client hands it to Result2Struct.
    const std::uint8_t* Payload() const { return block.size() > 4 ? block.data() + 4 : nullptr; }
    std::uint32_t PayloadLength() const {
        return block.size() > 4 ? static_cast<std::uint32_t>(block.size() - 4) : 0;
    }
    // The acknowledgement value the block carries; -1 when it is none.
    long long Ack() const;
};

// Gives the task the request and the work environment, runs DoTask.
TaskAnswer RunTask(VTask& task, const std::vector<std::uint8_t>& request, int workEnv);

}  // namespace vagent::test
