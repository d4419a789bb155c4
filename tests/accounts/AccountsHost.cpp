#include "accounts/AccountsHost.h"

#include <algorithm>

#include "vagent/LdapRootSite.h"

namespace vagent::test {
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

long long ClientAck(VTask& task, const TaskAnswer& answer) {
    std::uint32_t value = 0;
    if (task.Result2Struct(answer.Payload(), answer.PayloadLength(), &value) == 0) {
        return -1;
    }
    return value;
}

std::vector<std::string> Records(const std::vector<_VXUserInfoA>& records) {
    std::vector<std::string> texts;
    for (const _VXUserInfoA& record : records) {
        texts.push_back(record.name + "|" + record.comment);
    }
    return texts;
}

std::vector<std::string> List(std::initializer_list<const char*> items) {
    return std::vector<std::string>(items.begin(), items.end());
}

}  // namespace vagent::test
