#include "fakes/FakeLocalAccounts.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "os/Status.h"

namespace vagent::test {
namespace {

constexpr std::uint32_t kMemberNotInAlias = 1377;
constexpr std::uint32_t kUserNotInGroup = 2237;

std::string ServerForm(const wchar_t* server) {
    if (server == nullptr) {
        return "<null>";
    }
    const std::string text = Ascii(server);
    return text.empty() ? "\"\"" : text;
}

std::string Line(const char* operation, const wchar_t* server) {
    return std::string(operation) + " " + ServerForm(server);
}

std::string Line(const char* operation, const wchar_t* server, std::uint32_t level) {
    return Line(operation, server) + " " + std::to_string(level);
}

bool Contains(const std::vector<std::wstring>& list, const std::wstring& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

template <class Map>
std::vector<std::wstring> KeysOf(const Map& map) {
    std::vector<std::wstring> keys;
    for (const auto& entry : map) {
        keys.push_back(entry.first);
    }
    return keys;
}

}  // namespace

std::string Ascii(const std::wstring& text) {
    std::string narrow;
    for (wchar_t c : text) {
        narrow += static_cast<char>(c);
    }
    return narrow;
}

std::uint32_t FakeLocalAccounts::Answer(const std::string& line, std::uint32_t status) {
    calls.push_back(line);
    const auto failure = failures.find(line);
    if (failure != failures.end()) {
        status = failure->second;
    }
    return status;
}

template <class Entry>
std::uint32_t FakeLocalAccounts::Page(const std::vector<Entry>& all, std::uint32_t& resumeHandle,
                                      os::NetBatch<Entry>& batch) {
    batch = os::NetBatch<Entry>();
    const std::size_t start = std::min<std::size_t>(resumeHandle, all.size());
    const std::size_t end = std::min<std::size_t>(start + pageSize, all.size());
    batch.bufferReturned = true;
    batch.entries.assign(all.begin() + static_cast<std::ptrdiff_t>(start),
                         all.begin() + static_cast<std::ptrdiff_t>(end));
    batch.entriesRead = static_cast<std::uint32_t>(batch.entries.size());
    batch.totalEntries = static_cast<std::uint32_t>(all.size());
    if (shortBatches && !batch.entries.empty()) {
        batch.entries.pop_back();
    }
    resumeHandle = static_cast<std::uint32_t>(end);
    return end < all.size() ? std::uint32_t{os::kMoreData} : 0u;
}

template <class Entry>
std::uint32_t FakeLocalAccounts::WidePage(const std::vector<Entry>& all,
                                          std::uintptr_t& resumeHandle,
                                          os::NetBatch<Entry>& batch) {
    if (resumeHandle != 0 && resumeHandle < wideResumeBase) {
        ADD_FAILURE() << "resume handle " << resumeHandle << " was not handed out";
        batch = os::NetBatch<Entry>();
        return os::kInvalidParameter;
    }
    std::uint32_t position =
        static_cast<std::uint32_t>(resumeHandle == 0 ? 0 : resumeHandle - wideResumeBase);
    const std::uint32_t status = Page(all, position, batch);
    resumeHandle = wideResumeBase + position;
    return status;
}

std::uint32_t FakeLocalAccounts::ServerEnum(const wchar_t* server, std::uint32_t level,
                                            std::uint32_t preferredMaximumLength,
                                            std::uint32_t serverType, const wchar_t* domain,
                                            std::uint32_t& resumeHandle,
                                            os::NetBatch<os::ServerInfo101>& batch) {
    const std::string line =
        Line("ServerEnum", server, level) + " " + std::to_string(preferredMaximumLength) + " " +
        std::to_string(serverType) + " " + ServerForm(domain) + " " + std::to_string(resumeHandle);
    if (failures.count(line) != 0) {
        batch = os::NetBatch<os::ServerInfo101>();
        return Answer(line, 0);
    }
    return Answer(line, Page(servers, resumeHandle, batch));
}

std::uint32_t FakeLocalAccounts::UserAdd(const wchar_t* server, std::uint32_t level,
                                         const os::UserInfo1& user) {
    const std::string line = Line("UserAdd", server, level) + " " + Ascii(user.name);
    addedRecords.push_back(user);
    if (failures.count(line) != 0) {
        return Answer(line, 0);
    }
    if (users.count(user.name) != 0) {
        return Answer(line, os::kNerrUserExists);
    }
    if (user.password.size() < minimumPasswordLength) {
        return Answer(line, os::kNerrPasswordTooShort);
    }
    users[user.name] = User{user.password, user.hasComment ? user.comment : std::wstring()};
    return Answer(line, 0);
}

std::uint32_t FakeLocalAccounts::UserDel(const wchar_t* server, const std::wstring& user) {
    const std::string line = Line("UserDel", server) + " " + Ascii(user);
    if (failures.count(line) != 0) {
        return Answer(line, 0);
    }
    return Answer(line, users.erase(user) != 0 ? 0u : std::uint32_t{os::kNerrUserNotFound});
}

std::uint32_t FakeLocalAccounts::UserSetPassword(const wchar_t* server, const std::wstring& user,
                                                 std::uint32_t level,
                                                 const std::wstring& password) {
    const std::string line =
        Line("UserSetInfo", server, level) + " " + Ascii(user) + " " + Ascii(password);
    if (failures.count(line) != 0) {
        return Answer(line, 0);
    }
    const auto found = users.find(user);
    if (found == users.end()) {
        return Answer(line, os::kNerrUserNotFound);
    }
    if (password.size() < minimumPasswordLength) {
        return Answer(line, os::kNerrPasswordTooShort);
    }
    found->second.password = password;
    return Answer(line, 0);
}

std::uint32_t FakeLocalAccounts::UserEnum(const wchar_t* server, std::uint32_t level,
                                          std::uint32_t filter,
                                          std::uint32_t preferredMaximumLength,
                                          std::uint32_t& resumeHandle,
                                          os::NetBatch<std::wstring>& batch) {
    const std::string line = Line("UserEnum", server, level) + " " + std::to_string(filter) + " " +
                             std::to_string(preferredMaximumLength);
    if (failures.count(line) != 0) {
        batch = os::NetBatch<std::wstring>();
        return Answer(line, 0);
    }
    return Answer(line, Page(KeysOf(users), resumeHandle, batch));
}

std::uint32_t FakeLocalAccounts::UserGetComment(const wchar_t* server, const std::wstring& user,
                                                std::uint32_t level, std::wstring& comment) {
    const std::string line = Line("UserGetInfo", server, level) + " " + Ascii(user);
    if (failures.count(line) != 0) {
        return Answer(line, 0);
    }
    const auto found = users.find(user);
    if (found == users.end()) {
        return Answer(line, os::kNerrUserNotFound);
    }
    comment = found->second.comment;
    return Answer(line, 0);
}

std::uint32_t FakeLocalAccounts::UserGetGroups(const wchar_t* server, const std::wstring& user,
                                               std::uint32_t level,
                                               std::uint32_t preferredMaximumLength,
                                               os::NetBatch<std::wstring>& batch) {
    const std::string line = Line("UserGetGroups", server, level) + " " + Ascii(user) + " " +
                             std::to_string(preferredMaximumLength);
    batch = os::NetBatch<std::wstring>();
    if (failures.count(line) != 0) {
        return Answer(line, 0);
    }
    if (users.count(user) == 0) {
        return Answer(line, os::kNerrUserNotFound);
    }
    batch.bufferReturned = true;
    for (const auto& group : globalGroups) {
        if (Contains(group.second.members, user)) {
            batch.entries.push_back(group.first);
        }
    }
    batch.entriesRead = static_cast<std::uint32_t>(batch.entries.size());
    batch.totalEntries = batch.entriesRead;
    return Answer(line, 0);
}

std::uint32_t FakeLocalAccounts::GroupGetComment(const wchar_t* server, const std::wstring& group,
                                                 std::uint32_t level, std::wstring& comment) {
    const std::string line = Line("GroupGetInfo", server, level) + " " + Ascii(group);
    if (failures.count(line) != 0) {
        return Answer(line, 0);
    }
    const auto found = globalGroups.find(group);
    if (found == globalGroups.end()) {
        return Answer(line, os::kNerrGroupNotFound);
    }
    comment = found->second.comment;
    return Answer(line, 0);
}

std::uint32_t FakeLocalAccounts::GroupDelUser(const wchar_t* server, const std::wstring& group,
                                              const std::wstring& user) {
    const std::string line = Line("GroupDelUser", server) + " " + Ascii(group) + " " + Ascii(user);
    if (failures.count(line) != 0) {
        return Answer(line, 0);
    }
    const auto found = globalGroups.find(group);
    if (found == globalGroups.end()) {
        return Answer(line, os::kNerrGroupNotFound);
    }
    std::vector<std::wstring>& members = found->second.members;
    const auto member = std::find(members.begin(), members.end(), user);
    if (member == members.end()) {
        return Answer(line, kUserNotInGroup);
    }
    members.erase(member);
    return Answer(line, 0);
}

std::uint32_t FakeLocalAccounts::LocalGroupAdd(const wchar_t* server, std::uint32_t level,
                                               const std::wstring& group) {
    const std::string line = Line("LocalGroupAdd", server, level) + " " + Ascii(group);
    if (failures.count(line) != 0) {
        return Answer(line, 0);
    }
    if (localGroups.count(group) != 0) {
        return Answer(line, os::kErrorAliasExists);
    }
    localGroups[group] = Group();
    return Answer(line, 0);
}

std::uint32_t FakeLocalAccounts::LocalGroupDel(const wchar_t* server, const std::wstring& group) {
    const std::string line = Line("LocalGroupDel", server) + " " + Ascii(group);
    if (failures.count(line) != 0) {
        return Answer(line, 0);
    }
    return Answer(line, localGroups.erase(group) != 0 ? 0u : std::uint32_t{os::kErrorNoSuchAlias});
}

std::uint32_t FakeLocalAccounts::LocalGroupEnum(const wchar_t* server, std::uint32_t level,
                                                std::uint32_t preferredMaximumLength,
                                                std::uintptr_t& resumeHandle,
                                                os::NetBatch<std::wstring>& batch) {
    const std::string line =
        Line("LocalGroupEnum", server, level) + " " + std::to_string(preferredMaximumLength);
    if (failures.count(line) != 0) {
        batch = os::NetBatch<std::wstring>();
        return Answer(line, 0);
    }
    return Answer(line, WidePage(KeysOf(localGroups), resumeHandle, batch));
}

std::uint32_t FakeLocalAccounts::LocalGroupGetMembers(const wchar_t* server,
                                                      const std::wstring& group,
                                                      std::uint32_t level,
                                                      std::uint32_t preferredMaximumLength,
                                                      std::uintptr_t& resumeHandle,
                                                      os::NetBatch<std::wstring>& batch) {
    const std::string line = Line("LocalGroupGetMembers", server, level) + " " + Ascii(group) +
                             " " + std::to_string(preferredMaximumLength);
    batch = os::NetBatch<std::wstring>();
    if (failures.count(line) != 0) {
        return Answer(line, 0);
    }
    const auto found = localGroups.find(group);
    if (found == localGroups.end()) {
        return Answer(line, os::kErrorNoSuchAlias);
    }
    return Answer(line, WidePage(found->second.members, resumeHandle, batch));
}

std::uint32_t FakeLocalAccounts::LocalGroupAddMembers(const wchar_t* server,
                                                      const std::wstring& group,
                                                      std::uint32_t level,
                                                      const std::vector<std::wstring>& members) {
    std::string line = Line("LocalGroupAddMembers", server, level) + " " + Ascii(group);
    for (const std::wstring& member : members) {
        line += " " + Ascii(member);
    }
    if (failures.count(line) != 0) {
        return Answer(line, 0);
    }
    const auto found = localGroups.find(group);
    if (found == localGroups.end()) {
        return Answer(line, os::kErrorNoSuchAlias);
    }
    for (const std::wstring& member : members) {
        if (Contains(found->second.members, member)) {
            return Answer(line, os::kErrorMemberInAlias);
        }
    }
    for (const std::wstring& member : members) {
        found->second.members.push_back(member);
    }
    return Answer(line, 0);
}

std::uint32_t FakeLocalAccounts::LocalGroupDelMembers(const wchar_t* server,
                                                      const std::wstring& group,
                                                      std::uint32_t level,
                                                      const std::vector<std::wstring>& members) {
    std::string line = Line("LocalGroupDelMembers", server, level) + " " + Ascii(group);
    for (const std::wstring& member : members) {
        line += " " + Ascii(member);
    }
    if (failures.count(line) != 0) {
        return Answer(line, 0);
    }
    const auto found = localGroups.find(group);
    if (found == localGroups.end()) {
        return Answer(line, os::kErrorNoSuchAlias);
    }
    std::vector<std::wstring>& list = found->second.members;
    for (const std::wstring& member : members) {
        if (!Contains(list, member)) {
            return Answer(line, kMemberNotInAlias);
        }
    }
    for (const std::wstring& member : members) {
        list.erase(std::find(list.begin(), list.end(), member));
    }
    return Answer(line, 0);
}

void FakeLocalAccounts::DebugOutput(const std::wstring& text) {
    debugOutput.push_back(Ascii(text));
}

}  // namespace vagent::test
