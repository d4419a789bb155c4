#include "vagent/VTaskClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "helpers/LogCapture.h"
#include "helpers/TaskRun.h"
#include "os/Sockets.h"
#include "task/ScriptedService.h"
#include "vagent/UserRecords.h"
#include "vagent/VTask.h"

using ::testing::ElementsAre;
using vagent::os::kInvalidSocket;
using vagent::test::ListBlock;
using vagent::test::LogCapture;
using vagent::test::Reply;
using vagent::test::ScriptedService;
using vagent::test::StatusWord;
using Bytes = std::vector<std::uint8_t>;

namespace {

constexpr std::uint32_t kAddUser = 2;
constexpr std::uint32_t kShowGroupUsers = 20;
const Bytes kAckOne = {0x00, 0x00, 0x00, 0x01};

Bytes Concat(const Bytes& first, const Bytes& second) {
    Bytes all = first;
    all.insert(all.end(), second.begin(), second.end());
    return all;
}

// Connects the client to the service and sends the task's request with the
// block (none when empty).
void SendTo(VTaskClient& client, ScriptedService& service, std::uint32_t taskId,
            const Bytes& block = {}, HTTP_FUN* hooks = nullptr) {
    ASSERT_EQ(client.SetServer("127.0.0.1", service.Port().c_str()), 1);
    ASSERT_EQ(client.SetTask(taskId), 1);
    if (!block.empty()) {
        ASSERT_EQ(client.AddRequest(block.data(), static_cast<std::int32_t>(block.size())), 1);
    }
    ASSERT_EQ(client.SendRequest(7, "OU=Staff", kInvalidSocket, hooks), 1);
}

}  // namespace

TEST(VTaskClientOverLoopback, GoodReplyIsDecodedIntoTheOutput) {
    const Bytes request = ListBlock({"Staff"});
    ScriptedService service({Concat(StatusWord(0), ListBlock({"alice", "bob"}))});
    std::vector<std::string> users;
    {
        VTaskClient client;
        SendTo(client, service, kShowGroupUsers, request);
        EXPECT_EQ(client.GetTaskResult(&users, nullptr), 0u);
    }
    EXPECT_THAT(users, ElementsAre("alice", "bob"));
    const auto& frame = service.Frame();
    ASSERT_TRUE(frame.complete);
    EXPECT_EQ(frame.taskId, kShowGroupUsers);
    EXPECT_EQ(frame.workEnv, 7u);
    EXPECT_EQ(frame.rootSite, "OU=Staff");
    EXPECT_EQ(frame.block, request);
    EXPECT_TRUE(service.Trailing().empty());
}

TEST(VTaskClientOverLoopback, ReplyInSeparatePiecesIsGatheredWhole) {
    const Bytes reply = Reply(0, 4, kAckOne);
    std::vector<Bytes> pieces;
    for (std::uint8_t byte : reply) {
        pieces.push_back({byte});
    }
    ScriptedService service(pieces);
    VTaskClient client;
    SendTo(client, service, kAddUser, ListBlock({"u"}));
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 0u);
    EXPECT_EQ(ack, 1u);
}

TEST(VTaskClientOverLoopback, StatusFiveStopsAfterTheStatusWord) {
    ScriptedService service({{0x05, 0x00, 0x00, 0x00}});
    VTaskClient client;
    SendTo(client, service, kAddUser, ListBlock({"u"}));
    std::uint32_t ack = 3;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 5u);
    // No second read waited for the length that never comes.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
    EXPECT_EQ(ack, 3u);
}

TEST(VTaskClientOverLoopback, LengthZeroGivesTheLengthCode) {
    LogCapture capture;
    ScriptedService service({Reply(0, 0, {})});
    VTaskClient client;
    SendTo(client, service, kAddUser, ListBlock({"u"}));
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 0xE6000004u);
    EXPECT_THAT(capture.Texts(), ElementsAre("Data Len Error : 0"));
}

TEST(VTaskClientOverLoopback, SilentServiceFailsAfterTheReceiveLimitWithTimedOut) {
    ScriptedService service({});
    VTaskClient client;
    SendTo(client, service, kAddUser, ListBlock({"u"}));
    std::uint32_t ack = 0;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 10060u);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, std::chrono::milliseconds(4500));
    EXPECT_LT(waited, std::chrono::milliseconds(9000));
}

TEST(VTaskClientOverLoopback, DecodingFailureGivesTheTasksErrorCode) {
    ScriptedService service({Reply(0, 6, {0x00, 0x00, 0x00, 0x09, 'a', 'b'})});
    VTaskClient client;
    SendTo(client, service, 1, ListBlock({""}));
    // A user task that ran without a request holds 0xE6000002.
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(client.GetTask()->DoTask(&data, &size), 0);
    delete[] data;
    std::vector<_VXUserInfoA> users;
    EXPECT_EQ(client.GetTaskResult(&users, nullptr), 0xE6000002u);
}

TEST(VTaskClientOverLoopback, RefusedConnectLogsConnectFailedThenConnectServerFailed) {
    LogCapture capture;
    std::string closedPort;
    { closedPort = ScriptedService({}).Port(); }
    VTaskClient client;
    client.SetServer("127.0.0.1", closedPort.c_str());
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    EXPECT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 0);
    EXPECT_EQ(client.GetLastStatus(), 10061u);
    EXPECT_THAT(capture.Texts(), ElementsAre("connect failed", "ConnectServer failed"));
}

namespace {

struct LoopbackHookScript {
    int retriesLeft = 0;
    int lowerPayloadTo = 0;
    std::vector<int> wanted;
    std::vector<int> received;
} loopbackHooks;

int LoopbackBeforeRecv(std::uintptr_t, int* count) {
    if (loopbackHooks.retriesLeft > 0) {
        --loopbackHooks.retriesLeft;
        return 2;
    }
    loopbackHooks.wanted.push_back(*count);
    // Header words pass whole; payload reads are cut into small parts.
    if (loopbackHooks.lowerPayloadTo > 0 && loopbackHooks.wanted.size() > 2 &&
        *count > loopbackHooks.lowerPayloadTo) {
        *count = loopbackHooks.lowerPayloadTo;
    }
    return 1;
}

int LoopbackAfterRecv(int count) {
    loopbackHooks.received.push_back(count);
    return 0;
}

}  // namespace

TEST(VTaskClientOverLoopback, HooksAskingForRetriesStillReadTheWholeReply) {
    loopbackHooks = LoopbackHookScript{};
    loopbackHooks.retriesLeft = 2;
    HTTP_FUN hooks{nullptr, LoopbackBeforeRecv, LoopbackAfterRecv};
    ScriptedService service({Reply(0, 4, kAckOne)});
    VTaskClient client;
    SendTo(client, service, kAddUser, ListBlock({"u"}));
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, &hooks), 0u);
    EXPECT_EQ(ack, 1u);
    EXPECT_THAT(loopbackHooks.wanted, ElementsAre(4, 4, 4));
    EXPECT_THAT(loopbackHooks.received, ElementsAre(4, 4, 4));
}

TEST(VTaskClientOverLoopback, HookLoweringThePayloadCountReadsItInParts) {
    loopbackHooks = LoopbackHookScript{};
    loopbackHooks.lowerPayloadTo = 5;
    HTTP_FUN hooks{nullptr, LoopbackBeforeRecv, LoopbackAfterRecv};
    const Bytes block = ListBlock({"alice", "bob"});
    ASSERT_EQ(block.size(), 20u);
    ScriptedService service({Concat(StatusWord(0), block)});
    VTaskClient client;
    SendTo(client, service, kShowGroupUsers, ListBlock({"Staff"}));
    std::vector<std::string> users;
    EXPECT_EQ(client.GetTaskResult(&users, &hooks), 0u);
    EXPECT_THAT(users, ElementsAre("alice", "bob"));
    EXPECT_THAT(loopbackHooks.wanted, ElementsAre(4, 4, 16, 11, 6, 1));
    EXPECT_THAT(loopbackHooks.received, ElementsAre(4, 4, 5, 5, 5, 1));
}
