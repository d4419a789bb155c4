#include "os/NetApi.h"

#include <gtest/gtest.h>

#include "os/Status.h"

using vagent::os::Installed;
using vagent::os::NetApi;
using vagent::os::NetBatch;

namespace {

NetApi& Net() {
    return Installed<NetApi>();
}

// A system without the Windows account database answers "not supported".
bool Unsupported() {
    std::wstring comment;
    return Net().UserGetComment(nullptr, L"vagent-probe", 10, comment) == vagent::os::kNotSupported;
}

}  // namespace

TEST(NetApi, UnknownUserHasNoComment) {
    std::wstring comment = L"kept";
    const std::uint32_t status = Net().UserGetComment(nullptr, L"vagent-nobody-here", 10, comment);
    if (Unsupported()) {
        EXPECT_EQ(status, vagent::os::kNotSupported);
    } else {
        EXPECT_EQ(status, vagent::os::kNerrUserNotFound);
    }
    EXPECT_EQ(comment, L"kept");
}

TEST(NetApi, UserEnumerationHandsOutWhatItReports) {
    NetBatch<std::wstring> batch;
    std::uint32_t resume = 0;
    const std::uint32_t status = Net().UserEnum(nullptr, 0, vagent::os::kFilterNormalAccount,
                                                vagent::os::kMaxPreferredLength, resume, batch);
    if (Unsupported()) {
        EXPECT_EQ(status, vagent::os::kNotSupported);
        EXPECT_FALSE(batch.bufferReturned);
        return;
    }
    ASSERT_TRUE(status == 0 || status == vagent::os::kMoreData) << status;
    EXPECT_EQ(batch.entries.size(), batch.entriesRead);
    EXPECT_GE(batch.entriesRead, 1u);
}

TEST(NetApi, UserCreatedCanBeDeletedOnceOnly) {
    vagent::os::UserInfo1 user;
    user.name = L"vagentprobe";
    user.password = L"Pr0be!Passw0rd";
    user.privilege = vagent::os::kUserPrivUser;
    user.flags = vagent::os::kUserFlagScript | vagent::os::kUserFlagDontExpirePassword;
    const std::uint32_t added = Net().UserAdd(nullptr, 1, user);
    const std::uint32_t deleted = Net().UserDel(nullptr, user.name);
    const std::uint32_t again = Net().UserDel(nullptr, user.name);
    if (Unsupported()) {
        EXPECT_EQ(added, vagent::os::kNotSupported);
        EXPECT_EQ(deleted, vagent::os::kNotSupported);
        return;
    }
    EXPECT_EQ(added, 0u);
    EXPECT_EQ(deleted, 0u);
    EXPECT_EQ(again, vagent::os::kNerrUserNotFound);
}

TEST(NetApi, ServerEnumerationNeverHandsOutMoreThanItReports) {
    NetBatch<vagent::os::ServerInfo101> batch;
    std::uint32_t resume = 0;
    const std::uint32_t status =
        Net().ServerEnum(nullptr, 101, vagent::os::kMaxPreferredLength,
                         vagent::os::kServerTypeServer, nullptr, resume, batch);
    if (status != 0 && status != vagent::os::kMoreData) {
        EXPECT_TRUE(batch.entries.empty());
        return;
    }
    EXPECT_EQ(batch.entries.size(), batch.entriesRead);
}

TEST(NetApi, FailedCallAnswersItsStatusAndLeavesTheThreadsLastError) {
    if (Unsupported()) {
        GTEST_SKIP() << "no account database on this host";
    }
    Net().SetLastError(1234);
    const std::uint32_t status = Net().UserDel(nullptr, L"vagent-nobody-here");
    const std::uint32_t lastError = Net().LastError();
    EXPECT_EQ(status, vagent::os::kNerrUserNotFound);
    EXPECT_EQ(lastError, 1234u);
}
