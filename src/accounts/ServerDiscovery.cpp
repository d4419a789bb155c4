#include "accounts/ServerDiscovery.h"

#include <new>
#include <vector>

#include "accounts/ComScope.h"
#include "accounts/DirectoryMembership.h"
#include "accounts/DnsName.h"
#include "accounts/LdapPaths.h"
#include "accounts/TextConversion.h"
#include "os/ComputerNames.h"
#include "os/NetApi.h"
#include "os/Status.h"
#include "vagent/DllLog.h"
#include "support/TextCompare.h"

namespace {

using vagent::os::NetApi;
using vagent::os::NetBatch;
using vagent::os::ServerInfo101;

constexpr std::uint32_t kServerInfoLevel = 101;

std::uint32_t EnumerateServers(std::uint32_t& resumeHandle, NetBatch<ServerInfo101>& batch) {
    return vagent::os::Installed<NetApi>().ServerEnum(
        nullptr, kServerInfoLevel, vagent::os::kMaxPreferredLength, vagent::os::kServerTypeServer,
        nullptr, resumeHandle, batch);
}

bool IsController(std::uint32_t type) {
    return (type & vagent::os::kServerTypeDomainControllers) != 0;
}

// Where this machine stands in the server list: found, and if so whether it
// is a domain controller. Each pass of the list starts it afresh.
struct ListedRole {
    bool listed = false;
    bool found = false;
    bool controller = false;
};

// Every pass starts the server enumeration afresh and so sees the same first
// page again; a machine listed past it is never found. The passes are bounded
// so that such a machine is reported as not listed instead of spinning.
constexpr int kMostServerListPasses = 16;

bool FindThisMachine(const char* serverListFailedText, ListedRole& role) {
    char* netBiosName = nullptr;
    if (GetDnsName(&netBiosName, vagent::os::kComputerNameNetBIOS) == 0) {
        DllLogPrintf("GetDnsName failed");
        return false;
    }
    const std::string ownName = netBiosName;
    delete[] netBiosName;
    int more = 0;
    int passes = 0;
    do {
        ServerItem* items = nullptr;
        int count = 0;
        more = 0;
        if (ServerList(&items, &count, &more) == 0) {
            DllLogPrintf("%s", serverListFailedText);
            return false;
        }
        role.listed = true;
        for (int i = 0; items != nullptr && i < count; ++i) {
            std::string name;
            wstring2string(items[i].name, name);
            if (vagent::EqualsIgnoringCase(name, ownName)) {
                role.found = true;
                role.controller = items[i].isDomainController != 0;
                break;
            }
        }
        delete[] items;
    } while (!role.found && more != 0 && ++passes < kMostServerListPasses);
    return true;
}

int IsComputerInDirectory(int& isMember) {
    ComScope com;
    char* domain = nullptr;
    if (GetDnsName(&domain, vagent::os::kComputerNameDnsDomain) == 0) {
        DllLogPrintf("GetDnsName failed");
        return 0;
    }
    std::string dn;
    const int converted = NameDns2Ldap(domain, dn, 0);
    delete[] domain;
    if (converted == 0) {
        DllLogPrintf("NameDns2Ldap failed");
        return 0;
    }
    std::vector<std::wstring> names;
    if (EnumObject(Wide(ComputersPath(dn)), L"computer", names) != 0) {
        DllLogPrintf("EnumObject failed");
        return 0;
    }
    char* netBiosName = nullptr;
    if (GetDnsName(&netBiosName, vagent::os::kComputerNameNetBIOS) == 0) {
        DllLogPrintf("GetDnsName failed");
        return 0;
    }
    const std::wstring ownName = Wide(netBiosName);
    delete[] netBiosName;
    isMember = 0;
    for (const std::wstring& name : names) {
        if (name == ownName) {
            isMember = 1;
        }
    }
    return 1;
}

}  // namespace

int ServerList(ServerItem** items, int* count, int* more) {
    std::uint32_t resumeHandle = 0;
    NetBatch<ServerInfo101> batch;
    const std::uint32_t status = EnumerateServers(resumeHandle, batch);
    if (status != 0 && status != vagent::os::kMoreData) {
        DllLogPrintf("NetServerEnum failed [%ld]", static_cast<long>(status));
        return 0;
    }
    if (!batch.bufferReturned) {
        return 1;
    }
    *count = static_cast<int>(batch.entriesRead);
    ServerItem* made = new (std::nothrow) ServerItem[batch.entriesRead];
    if (made == nullptr) {
        DllLogPrintf("ServerList : new [%d] bytes failed", *count);
        return 0;
    }
    for (std::uint32_t i = 0; i < batch.entriesRead; ++i) {
        if (i >= batch.entries.size()) {
            DllLogPrintf("ServerList : assert invalid");
            delete[] made;
            return 0;
        }
        made[i].name = batch.entries[i].name;
        made[i].isDomainController = IsController(batch.entries[i].type) ? 1 : 0;
    }
    *items = made;
    if (more != nullptr) {
        *more = status == vagent::os::kMoreData ? 1 : 0;
    }
    return 1;
}

int GetDnCtrl(std::wstring& name) {
    std::uint32_t resumeHandle = 0;
    std::uint32_t status = 0;
    do {
        NetBatch<ServerInfo101> batch;
        status = EnumerateServers(resumeHandle, batch);
        if (status != 0 && status != vagent::os::kMoreData) {
            return 0;
        }
        for (std::uint32_t i = 0; i < batch.entriesRead; ++i) {
            if (i >= batch.entries.size()) {
                DllLogPrintf("GetDnCtrl : assert invalid");
                return 0;
            }
            if (IsController(batch.entries[i].type)) {
                name = batch.entries[i].name;
                return 1;
            }
        }
    } while (status == vagent::os::kMoreData);
    return 0;
}

int IsDnCtrl(int& isDc) {
    ComScope com;
    ListedRole role;
    const bool looked = FindThisMachine("ServerList failed", role);
    if (role.listed) {
        isDc = role.found && role.controller ? 1 : 0;
    }
    return looked && role.found ? 1 : 0;
}

int IsComputer(int& isMember, int mode) {
    if (mode != 0) {
        return IsComputerInDirectory(isMember);
    }
    ComScope com;
    ListedRole role;
    const bool looked = FindThisMachine("ServerList Failed", role);
    if (role.listed) {
        isMember = role.found && !role.controller ? 1 : 0;
    }
    return looked && role.found ? 1 : 0;
}
