#include "fakes/FakeLocalAccounts.h"

#include <gtest/gtest.h>

#include "os/Status.h"

// The answers that the account database's own contract tests pin where the
// system is real: the fake must give the same.

TEST(FakeLocalAccounts, UnknownUserHasNoCommentAsTheSystemAnswers) {
    vagent::test::FakeLocalAccounts net;
    std::wstring comment = L"kept";
    EXPECT_EQ(net.UserGetComment(nullptr, L"vagent-nobody-here", 10, comment),
              vagent::os::kNerrUserNotFound);
    EXPECT_EQ(comment, L"kept");
}

TEST(FakeLocalAccounts, UserCreatedCanBeDeletedOnceOnlyAsTheSystemAnswers) {
    vagent::test::FakeLocalAccounts net;
    vagent::os::UserInfo1 user;
    user.name = L"vagentprobe";
    user.password = L"Pr0be!Passw0rd";
    EXPECT_EQ(net.UserAdd(nullptr, 1, user), 0u);
    EXPECT_EQ(net.UserAdd(nullptr, 1, user), vagent::os::kNerrUserExists);
    EXPECT_EQ(net.UserDel(nullptr, user.name), 0u);
    EXPECT_EQ(net.UserDel(nullptr, user.name), vagent::os::kNerrUserNotFound);
}

TEST(FakeLocalAccounts, EnumerationHandsOutWhatItReportsPageByPage) {
    vagent::test::FakeLocalAccounts net;
    net.pageSize = 2;
    net.users = {{L"a", {}}, {L"b", {}}, {L"c", {}}};
    vagent::os::NetBatch<std::wstring> batch;
    std::uint32_t resume = 0;
    EXPECT_EQ(net.UserEnum(nullptr, 0, 2, vagent::os::kMaxPreferredLength, resume, batch),
              vagent::os::kMoreData);
    EXPECT_EQ(batch.entries.size(), batch.entriesRead);
    EXPECT_EQ(batch.totalEntries, 3u);
    EXPECT_EQ(net.UserEnum(nullptr, 0, 2, vagent::os::kMaxPreferredLength, resume, batch), 0u);
    EXPECT_EQ(batch.entries, std::vector<std::wstring>{L"c"});
}

TEST(FakeLocalAccounts, FailedCallAnswersItsStatusAndLeavesTheLastErrorAsTheSystemDoes) {
    vagent::test::FakeLocalAccounts net;
    net.SetLastError(1234);
    EXPECT_EQ(net.UserDel(nullptr, L"vagent-nobody-here"), vagent::os::kNerrUserNotFound);
    EXPECT_EQ(net.LastError(), 1234u);
}
