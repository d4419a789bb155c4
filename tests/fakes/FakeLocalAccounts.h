#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "os/NetApi.h"

namespace vagent::test {

// An in-memory local account database answering as NetAPI does: users with
// passwords and comments, local and global groups with their members, the
// server list, paged enumerations (234 while more entries follow). Every call
// is recorded as one line: the operation, the server-name form (<null>, \\.
// or "" for an empty text), the level where the call has one, then the names
// it was given.
class FakeLocalAccounts final : public os::NetApi {
public:
    struct User {
        std::wstring password;
        std::wstring comment;
    };
    struct Group {
        std::wstring comment;
        std::vector<std::wstring> members;
    };

    std::uint32_t ServerEnum(const wchar_t* server, std::uint32_t level,
                             std::uint32_t preferredMaximumLength, std::uint32_t serverType,
                             const wchar_t* domain, std::uint32_t& resumeHandle,
                             os::NetBatch<os::ServerInfo101>& batch) override;
    std::uint32_t UserAdd(const wchar_t* server, std::uint32_t level,
                          const os::UserInfo1& user) override;
    std::uint32_t UserDel(const wchar_t* server, const std::wstring& user) override;
    std::uint32_t UserSetPassword(const wchar_t* server, const std::wstring& user,
                                  std::uint32_t level, const std::wstring& password) override;
    std::uint32_t UserEnum(const wchar_t* server, std::uint32_t level, std::uint32_t filter,
                           std::uint32_t preferredMaximumLength, std::uint32_t& resumeHandle,
                           os::NetBatch<std::wstring>& batch) override;
    std::uint32_t UserGetComment(const wchar_t* server, const std::wstring& user,
                                 std::uint32_t level, std::wstring& comment) override;
    std::uint32_t UserGetGroups(const wchar_t* server, const std::wstring& user,
                                std::uint32_t level, std::uint32_t preferredMaximumLength,
                                os::NetBatch<std::wstring>& batch) override;
    std::uint32_t GroupGetComment(const wchar_t* server, const std::wstring& group,
                                  std::uint32_t level, std::wstring& comment) override;
    std::uint32_t GroupDelUser(const wchar_t* server, const std::wstring& group,
                               const std::wstring& user) override;
    std::uint32_t LocalGroupAdd(const wchar_t* server, std::uint32_t level,
                                const std::wstring& group) override;
    std::uint32_t LocalGroupDel(const wchar_t* server, const std::wstring& group) override;
    std::uint32_t LocalGroupEnum(const wchar_t* server, std::uint32_t level,
                                 std::uint32_t preferredMaximumLength, std::uintptr_t& resumeHandle,
                                 os::NetBatch<std::wstring>& batch) override;
    std::uint32_t LocalGroupGetMembers(const wchar_t* server, const std::wstring& group,
                                       std::uint32_t level, std::uint32_t preferredMaximumLength,
                                       std::uintptr_t& resumeHandle,
                                       os::NetBatch<std::wstring>& batch) override;
    std::uint32_t LocalGroupAddMembers(const wchar_t* server, const std::wstring& group,
                                       std::uint32_t level,
                                       const std::vector<std::wstring>& members) override;
    std::uint32_t LocalGroupDelMembers(const wchar_t* server, const std::wstring& group,
                                       std::uint32_t level,
                                       const std::vector<std::wstring>& members) override;
    std::uint32_t LastError() override { return lastError; }
    void SetLastError(std::uint32_t error) override { lastError = error; }
    void DebugOutput(const std::wstring& text) override;

    // Makes the call whose recorded line is exactly `line` fail with status.
    void FailOn(const std::string& line, std::uint32_t status) { failures[line] = status; }

    std::map<std::wstring, User> users;
    std::map<std::wstring, Group> localGroups;
    std::map<std::wstring, Group> globalGroups;
    std::vector<os::ServerInfo101> servers;
    // Entries per enumeration call; more give 234 and a resume handle.
    std::uint32_t pageSize = 100;
    // Pointer-wide resume handles (local groups and their members) are
    // handed out as this base plus the position, so that a caller that cuts
    // them to 32 bits is caught; 0 still starts an enumeration.
    std::uintptr_t wideResumeBase = 0;
    // Makes each enumeration answer one entry fewer than it reports.
    bool shortBatches = false;
    // Passwords shorter than this are refused with 2245.
    std::size_t minimumPasswordLength = 0;
    std::map<std::string, std::uint32_t> failures;
    // The thread's last error: what GetLastError answers. Like the real
    // calls, the fake's calls answer with their status and leave it alone.
    std::uint32_t lastError = 0;
    std::vector<os::UserInfo1> addedRecords;
    std::vector<std::string> calls;
    std::vector<std::string> debugOutput;

private:
    std::uint32_t Answer(const std::string& line, std::uint32_t status);
    template <class Entry>
    std::uint32_t Page(const std::vector<Entry>& all, std::uint32_t& resumeHandle,
                       os::NetBatch<Entry>& batch);
    template <class Entry>
    std::uint32_t WidePage(const std::vector<Entry>& all, std::uintptr_t& resumeHandle,
                           os::NetBatch<Entry>& batch);
};

// The narrow form of a wide text whose characters are all below 0x80.
std::string Ascii(const std::wstring& text);

}  // namespace vagent::test
