#include "os/Directory.h"

#include <gtest/gtest.h>

#include <memory>

#include "os/Com.h"

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
