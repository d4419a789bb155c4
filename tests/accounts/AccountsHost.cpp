#include "accounts/AccountsHost.h"

#include <algorithm>

#include "vagent/LdapRootSite.h"
#include "vagent/ResultEncoders.h"

namespace vagent::test {
namespace {

std::vector<std::uint8_t> Adopt(int made, std::uint8_t* data, std::uint32_t size) {
    std::vector<std::uint8_t> block;
    if (made != 0 && data != nullptr) {
        block.assign(data, data + size);
    }
    delete[] data;
    return block;
}

}  // namespace

bool WatchedCom::Balanced() const {
    return initializations == uninitializations &&
           std::all_of(liveAtUninitialize.begin(), liveAtUninitialize.end(),
                       [](int live) { return live == 0; });
}

AccountsHost::AccountsHost() : savedRootSite_(GetLDAPRootSite()) {
    std::string users = "CN=Users";
    SetLDAPRootSite(users);
    directory.AddEntry(kDomainDn, L"domain");
    directory.AddEntry(std::wstring(L"CN=Users,") + kDomainDn, L"container");
    directory.AddEntry(std::wstring(L"CN=Computers,") + kDomainDn, L"container");
}

AccountsHost::~AccountsHost() {
    SetLDAPRootSite(savedRootSite_);
}

std::wstring AccountsHost::UsersDn(const std::wstring& name) {
    return L"CN=" + name + L",CN=Users," + kDomainDn;
}

FakeDirectory::Entry& AccountsHost::AddDirectoryUser(const std::wstring& name) {
    FakeDirectory::Entry& entry = directory.AddEntry(UsersDn(name), L"user");
    entry.attributes[L"samaccountname"] = name;
    return entry;
}

FakeDirectory::Entry& AccountsHost::AddDirectoryGroup(const std::wstring& name) {
    return directory.AddEntry(UsersDn(name), L"group");
}

std::vector<std::uint8_t> ListBlock(const std::vector<std::string>& items) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int made = VecTStringToResult(items, data, size);
    return Adopt(made, data, size);
}

std::vector<std::uint8_t> PairBlock(const std::vector<std::string>& first,
                                    const std::vector<std::string>& second) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int made = VecTString2ToResult(first, second, data, size);
    return Adopt(made, data, size);
}

std::vector<std::uint8_t> TripleBlock(const std::vector<std::string>& first,
                                      const std::vector<std::string>& second,
                                      const std::vector<std::string>& third) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int made = VecTString3ToResult(first, second, third, data, size);
    return Adopt(made, data, size);
}

std::vector<std::uint8_t> HeadBlock(const std::string& head, const std::vector<std::string>& rest) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    const int made = StrVecToResult(head, rest, data, size);
    return Adopt(made, data, size);
}

long long TaskAnswer::Ack() const {
    if (block.size() != 8 || block[0] != 0 || block[1] != 0 || block[2] != 0 || block[3] != 4) {
        return -1;
    }
    return static_cast<long long>(block[4]) << 24 | static_cast<long long>(block[5]) << 16 |
           static_cast<long long>(block[6]) << 8 | static_cast<long long>(block[7]);
}

TaskAnswer RunTask(VTask& task, const std::vector<std::uint8_t>& request, int workEnv) {
    std::vector<std::uint8_t> copy = request;
    TaskRequest record;
    record.length = static_cast<std::uint32_t>(copy.size());
    record.data = copy.empty() ? nullptr : copy.data();
    task.SetRequest(record);
    task.SetWorkEnv(workEnv, nullptr);
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    TaskAnswer answer;
    answer.truth = task.DoTask(&data, &size);
    if (data != nullptr) {
        answer.block.assign(data, data + size);
    }
    delete[] data;
    return answer;
}

}  // namespace vagent::test
