#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "os/Directory.h"

namespace vagent::test {

// An in-memory directory: objects by distinguished name (compared without
// letter case and without the blanks after commas), containers, users and
// groups with their attributes, passwords and members; one-level and subtree
// searches with the user and group filters, in pages; container listings.
// Every call that reaches the directory is recorded as one line, the
// operation first ("BindGroup LDAP://CN=Sales, DC=x", "Add LDAP://CN=ann,
// DC=x", "SetInfo CN=ann,DC=x"), and any recorded line can be made to fail.
// Objects handed out are counted while they live.
class FakeDirectory final : public os::Directory {
public:
    // The socket library's status for a server name that does not resolve.
    static constexpr std::uint32_t kHostNotFound = 11001;

    struct Entry {
        std::wstring dn;
        std::wstring objectClass;
        // Attribute names in lower case.
        std::map<std::wstring, std::wstring> attributes;
        std::wstring password;
        bool disabled = true;
        // The members' keys.
        std::vector<std::wstring> members;
    };
    // What a recorded line answers instead: its result, and what the
    // extended error reads afterwards.
    struct Fault {
        std::int32_t result = os::kDirectoryFailed;
        std::uint32_t extendedError = 0;
    };

    FakeDirectory();
    ~FakeDirectory() override;

    std::int32_t BindContainer(const std::wstring& path,
                               std::unique_ptr<os::DirectoryContainer>& container) override;
    std::int32_t BindObject(const std::wstring& path,
                            std::unique_ptr<os::DirectoryObject>& object) override;
    std::int32_t BindUser(const std::wstring& path,
                          std::unique_ptr<os::DirectoryUser>& user) override;
    std::int32_t BindGroup(const std::wstring& path,
                           std::unique_ptr<os::DirectoryGroup>& group) override;
    std::int32_t BindSearch(const std::wstring& path,
                            std::unique_ptr<os::DirectorySearch>& search) override;
    std::int32_t LastExtendedError(std::uint32_t& error) override;
    std::uint32_t LastError() override { return lastError; }

    // Adds an object (its class "user", "group", "container", "domain" ...).
    Entry& AddEntry(const std::wstring& dn, const std::wstring& objectClass);
    void AddMember(const std::wstring& groupDn, const std::wstring& memberDn);
    Entry* Find(const std::wstring& dnOrPath);
    bool Exists(const std::wstring& dnOrPath) { return Find(dnOrPath) != nullptr; }
    bool IsMember(const std::wstring& groupDn, const std::wstring& memberDn);
    // The keys of the groups that hold the member, in key order.
    std::vector<std::wstring> GroupsOf(const std::wstring& memberKey);
    // A distinguished name or path as a key: no "LDAP://", no blanks after
    // commas, lower case.
    static std::wstring Key(const std::wstring& dnOrPath);
    // The lines recorded that begin with the prefix.
    std::vector<std::string> CallsStartingWith(const std::string& prefix) const;

    // A call that reports success but hands out no object, as a provider
    // may; recorded like any fault.
    static Fault NoObject() { return Fault{os::kDirectoryOk, 0}; }

    void FailOn(const std::string& line, Fault fault) { failures[line] = fault; }
    // Answers the fault recorded for the line, if any; records the line.
    bool Faulted(const std::string& line, std::int32_t& result);
    // Records a failure of the directory itself: its extended error.
    std::int32_t Fail(std::int32_t result, std::uint32_t extended);
    // Records a failed bind: the thread's last error as the system leaves it.
    std::int32_t FailBind(std::int32_t result);

    std::map<std::wstring, Entry> entries;
    // Objects created but not yet committed, by a number of their own.
    std::map<int, Entry> pending;
    int nextPending = 0;
    std::map<std::string, Fault> failures;
    std::vector<std::string> calls;
    // The path of every bind exactly as the caller wrote it. Objects are
    // found by any form of their name, so only these show the form the
    // caller used.
    std::vector<std::wstring> boundPaths;
    // Rows per search page; 0 for one page.
    std::size_t rowsPerPage = 0;
    // The thread's last error. Only a failed bind changes it: the system's
    // bind leaves the status of its own failed step there, a socket status
    // and never a code made from its result; the fake leaves the name
    // lookup's. Every other call leaves it as the caller left it.
    std::uint32_t lastError = 0;
    std::uint32_t failedBindLastError = kHostNotFound;
    std::uint32_t extendedError = 0;
    // Directory objects handed out and not yet released.
    int live = 0;
};

}  // namespace vagent::test
