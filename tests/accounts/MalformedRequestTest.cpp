#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "accounts/AccountsHost.h"
#include "vagent/VGroupTask.h"
#include "vagent/VUserTask.h"

using vagent::test::AccountsHost;
using vagent::test::HeadBlock;
using vagent::test::ListBlock;
using vagent::test::RunTask;
using vagent::test::TaskAnswer;

namespace {

const std::vector<std::uint32_t> kUserIds = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 37};
const std::vector<std::uint32_t> kGroupIds = {14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 42};

std::unique_ptr<VTask> TaskFor(std::uint32_t id) {
    if (id <= 13 || id == 37) {
        return std::make_unique<VUserTask>(id);
    }
    return std::make_unique<VGroupTask>(id);
}

std::vector<std::uint32_t> AllIds() {
    std::vector<std::uint32_t> ids = kUserIds;
    ids.insert(ids.end(), kGroupIds.begin(), kGroupIds.end());
    return ids;
}

// A block whose length prefix agrees with its size: what every answer is.
bool IsWholeBlock(const TaskAnswer& answer) {
    if (answer.block.size() < 8) {
        return false;
    }
    const std::uint32_t prefix = static_cast<std::uint32_t>(answer.block[0]) << 24 |
                                 static_cast<std::uint32_t>(answer.block[1]) << 16 |
                                 static_cast<std::uint32_t>(answer.block[2]) << 8 |
                                 static_cast<std::uint32_t>(answer.block[3]);
    return prefix == answer.block.size() - 4;
}

void ExpectAcknowledgementZeroForEveryId(const std::vector<std::uint8_t>& block) {
    for (const std::uint32_t id : AllIds()) {
        for (const int env : {0, 1}) {
            AccountsHost host;
            std::unique_ptr<VTask> task = TaskFor(id);
            const TaskAnswer answer = RunTask(*task, block, env);
            EXPECT_EQ(answer.truth, 0) << "id " << id << " env " << env;
            EXPECT_EQ(answer.Ack(), 0) << "id " << id << " env " << env;
            EXPECT_TRUE(host.net.calls.empty()) << "id " << id;
            EXPECT_TRUE(host.directory.calls.empty()) << "id " << id;
        }
    }
}

}  // namespace

TEST(MalformedRequest, EmptyRequestAnswersZeroForEveryId) {
    ExpectAcknowledgementZeroForEveryId({});
}

TEST(MalformedRequest, RequestShorterThanItsPrefixAnswersZeroForEveryId) {
    ExpectAcknowledgementZeroForEveryId({0, 0, 0});
}

TEST(MalformedRequest, BlockWithoutItemsAnswersZeroForEveryId) {
    ExpectAcknowledgementZeroForEveryId({0, 0, 0, 0});
}

TEST(MalformedRequest, ItemClaimingMoreBytesThanRemainAnswersZeroForEveryId) {
    ExpectAcknowledgementZeroForEveryId({0, 0, 0, 8, 0, 0, 0, 9, 'a', 'b', 'c', 'd'});
}

TEST(MalformedRequest, LengthFieldCutShortAnswersZeroForEveryId) {
    ExpectAcknowledgementZeroForEveryId({0, 0, 0, 6, 0, 0, 0, 1, 'a', 0, 0});
}

TEST(MalformedRequest, HugeItemLengthIsNotTrusted) {
    ExpectAcknowledgementZeroForEveryId({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xF0, 'a'});
}

TEST(MalformedRequest, EveryTruncationOfAWellFormedRequestGetsAWholeAnswer) {
    const std::vector<std::uint8_t> full = HeadBlock("Sales", {"ann", "bob", "1"});
    for (const std::uint32_t id : AllIds()) {
        for (std::size_t size = 0; size <= full.size(); ++size) {
            AccountsHost host;
            host.net.localGroups[L"Sales"] = {};
            std::unique_ptr<VTask> task = TaskFor(id);
            const TaskAnswer answer =
                RunTask(*task, std::vector<std::uint8_t>(full.begin(), full.begin() + size), 0);
            EXPECT_TRUE(IsWholeBlock(answer)) << "id " << id << " size " << size;
        }
    }
}

TEST(MalformedRequest, WrongItemCountsGetAnAnswerTheClientCanRead) {
    for (const std::uint32_t id : AllIds()) {
        for (std::size_t count = 1; count <= 4; ++count) {
            for (const int env : {0, 1}) {
                AccountsHost host;
                std::unique_ptr<VTask> task = TaskFor(id);
                const TaskAnswer answer =
                    RunTask(*task, ListBlock(std::vector<std::string>(count, "x")), env);
                EXPECT_TRUE(IsWholeBlock(answer)) << "id " << id << " items " << count;
                EXPECT_TRUE(host.com.Balanced()) << "id " << id;
            }
        }
    }
}

TEST(MalformedRequest, OddItemsForPairsCreateOnlyTheWholePairs) {
    AccountsHost host;
    VUserTask task(2);
    const TaskAnswer answer = RunTask(task, ListBlock({"ann", "pw", "bob"}), 0);
    EXPECT_EQ(answer.Ack(), 1);
    EXPECT_EQ(host.net.users.size(), 1u);
    EXPECT_EQ(host.net.users.count(L"ann"), 1u);
}

TEST(MalformedRequest, TwoItemsForTriplesChangeNothing) {
    AccountsHost host;
    host.net.users[L"ann"].password = L"old";
    VUserTask task(5);
    const TaskAnswer answer = RunTask(task, ListBlock({"ann", "old"}), 0);
    EXPECT_EQ(answer.Ack(), 1);
    EXPECT_EQ(host.net.users[L"ann"].password, L"old");
}

TEST(MalformedRequest, GroupWithoutUsersAddsNobody) {
    AccountsHost host;
    host.net.localGroups[L"Sales"] = {};
    VGroupTask task(18);
    const TaskAnswer answer = RunTask(task, ListBlock({"Sales"}), 0);
    EXPECT_EQ(answer.Ack(), 1);
    EXPECT_TRUE(host.net.localGroups[L"Sales"].members.empty());
}
