#include "os/Directory.h"

#include <gtest/gtest.h>

#include <memory>

#include "os/Com.h"
#include "os/NetApi.h"
#include "os/Status.h"

using vagent::os::Directory;
using vagent::os::DirectorySucceeded;
using vagent::os::Installed;

namespace {

// A path with a server that cannot be reached: the directory answers at
// once that it has no server, and a system without a directory that it has
// no directory.
const wchar_t kUnreachable[] = L"LDAP://vagent-no-such-server.invalid/CN=Users,DC=invalid";

class ComForTheTest {
public:
    ComForTheTest() { Installed<vagent::os::Com>().Initialize(); }
    ~ComForTheTest() { Installed<vagent::os::Com>().Uninitialize(); }
    ComForTheTest(const ComForTheTest&) = delete;
    ComForTheTest& operator=(const ComForTheTest&) = delete;
};

bool IsExpectedRefusal(std::int32_t result) {
    return result == vagent::os::kDirectoryServerDown ||
           result == vagent::os::kDirectoryNotSupported;
}

// Socket-library statuses, from WSABASEERR up.
bool IsSocketStatus(std::uint32_t error) {
    return error >= 10000 && error < 12000;
}

}  // namespace

TEST(Directory, UnreachableServerRefusesEveryBindAndHandsOutNothing) {
    ComForTheTest com;
    Directory& directory = Installed<Directory>();
    std::unique_ptr<vagent::os::DirectoryContainer> container;
    std::unique_ptr<vagent::os::DirectoryObject> object;
    std::unique_ptr<vagent::os::DirectoryUser> user;
    std::unique_ptr<vagent::os::DirectoryGroup> group;
    std::unique_ptr<vagent::os::DirectorySearch> search;
    const std::int32_t results[] = {
        directory.BindContainer(kUnreachable, container),
        directory.BindObject(kUnreachable, object), directory.BindUser(kUnreachable, user),
        directory.BindGroup(kUnreachable, group), directory.BindSearch(kUnreachable, search)};
    for (const std::int32_t result : results) {
        EXPECT_FALSE(DirectorySucceeded(result));
        EXPECT_TRUE(IsExpectedRefusal(result)) << std::hex << result;
    }
    EXPECT_EQ(container, nullptr);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(user, nullptr);
    EXPECT_EQ(group, nullptr);
    EXPECT_EQ(search, nullptr);
}

// A bind that fails reports through its result, but the thread's last error
// does not stay as the caller left it either: it holds the status of the
// provider's own failed step, a socket status (the name lookup's for a
// server that does not resolve, the connection's for one that does not
// answer), never a code made from the bind's result.
TEST(Directory, FailedBindLeavesTheStatusOfItsConnectionInTheThreadsLastError) {
    ComForTheTest com;
    Directory& directory = Installed<Directory>();
    const wchar_t* const paths[] = {kUnreachable, L"LDAP://127.0.0.1/CN=Users,DC=invalid"};
    for (const wchar_t* path : paths) {
        constexpr std::uint32_t kMarker = 1234;
        std::unique_ptr<vagent::os::DirectoryGroup> group;
        Installed<vagent::os::NetApi>().SetLastError(kMarker);
        const std::int32_t result = directory.BindGroup(path, group);
        const std::uint32_t lastError = directory.LastError();
        if (result == vagent::os::kDirectoryNotSupported) {
            GTEST_SKIP() << "no directory on this system";
        }
        EXPECT_EQ(result, vagent::os::kDirectoryServerDown) << std::hex << result;
        EXPECT_NE(lastError, kMarker);
        EXPECT_NE(lastError, static_cast<std::uint32_t>(result) & 0xFFFFu);
        EXPECT_TRUE(IsSocketStatus(lastError)) << lastError;
    }
}
