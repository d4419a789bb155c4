#include "vagent/VTaskClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"
#include "helpers/TaskRun.h"
#include "os/Sockets.h"
#include "task/ScriptedService.h"
#include "task/ScriptedSockets.h"
#include "vagent/UserRecords.h"
#include "vagent/VTask.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::os::kInvalidSocket;
using vagent::os::ScopedFacility;
using vagent::test::ListBlock;
using vagent::test::LogCapture;
using vagent::test::Reply;
using vagent::test::ScriptedSockets;
using vagent::test::StatusWord;
using Bytes = std::vector<std::uint8_t>;

namespace {

constexpr std::uint32_t kAddUser = 2;
constexpr std::uint32_t kDeleteUser = 3;
constexpr std::uint32_t kShowGroupUsers = 20;
const Bytes kAckOne = {0x00, 0x00, 0x00, 0x01};

// A client on a fake socket library, with its task chosen and its server
// set; the fake is installed before the client starts the library.
class ClientOnFakeSockets : public ::testing::Test {
protected:
    ClientOnFakeSockets() : scope_(sockets_) {}

    // Sends a request for the task with no block and the empty root site.
    VTaskClient& SentClient(std::uint32_t taskId) {
        client_.emplace(taskId);
        return *client_->client;
    }

    struct Holder {
        explicit Holder(std::uint32_t taskId) : client(new VTaskClient) {
            client->SetServer("10.1.2.3", "4321");
            EXPECT_EQ(client->SetTask(taskId), 1);
            EXPECT_EQ(client->SendRequest(0, "", kInvalidSocket, nullptr), 1);
        }
        ~Holder() { delete client; }
        Holder(const Holder&) = delete;
        Holder& operator=(const Holder&) = delete;
        VTaskClient* client;
    };

    ScriptedSockets sockets_;
    ScopedFacility<vagent::os::Sockets> scope_;
    std::optional<Holder> client_;
};

// The frame bytes the fake saw in the one send of a request.
Bytes OnlySend(const ScriptedSockets& sockets) {
    EXPECT_EQ(sockets.sends.size(), 1u);
    return sockets.sends.empty() ? Bytes{} : sockets.sends.front();
}

Bytes Concat(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

}  // namespace

TEST_F(ClientOnFakeSockets, UnusedClientOpensNoSocketAndStopsTheSocketLibraryOnce) {
    { VTaskClient client; }
    EXPECT_EQ(sockets_.startups, 1);
    EXPECT_EQ(sockets_.cleanups, 1);
    EXPECT_EQ(sockets_.opens, 0);
    EXPECT_THAT(sockets_.closed, IsEmpty());
    EXPECT_EQ(sockets_.shutdowns, 0);
}

TEST_F(ClientOnFakeSockets, StartsWithNoTaskDefaultPortAndNoConnection) {
    VTaskClient client;
    EXPECT_EQ(client.GetTaskId(), 0u);
    EXPECT_EQ(client.GetTask(), nullptr);
    EXPECT_EQ(client.GetConnection(), kInvalidSocket);
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    ASSERT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 1);
    EXPECT_EQ(sockets_.connectedPort, 1234);
}

TEST_F(ClientOnFakeSockets, FailedStartIsNotMatchedByAStop) {
    sockets_.startupStatus = 10091;
    { VTaskClient client; }
    EXPECT_EQ(sockets_.startups, 1);
    EXPECT_EQ(sockets_.cleanups, 0);
}

TEST_F(ClientOnFakeSockets, SetServerTakesBothTexts) {
    VTaskClient client;
    EXPECT_EQ(client.SetServer("10.1.2.3", "4321"), 1);
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    ASSERT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 1);
    EXPECT_EQ(sockets_.connectedAddress, "10.1.2.3");
    EXPECT_EQ(sockets_.connectedPort, 4321);
}

TEST_F(ClientOnFakeSockets, PortTextStopsAtTheFirstNonDigit) {
    VTaskClient client;
    client.SetServer("10.1.2.3", "80x1");
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    ASSERT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 1);
    EXPECT_EQ(sockets_.connectedPort, 80);
}

TEST_F(ClientOnFakeSockets, PortTextWithoutDigitsIsPortZero) {
    VTaskClient client;
    client.SetServer("10.1.2.3", "http");
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    ASSERT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 1);
    EXPECT_EQ(sockets_.connectedPort, 0);
}

TEST_F(ClientOnFakeSockets, SetTaskMakesTheFamilyTaskForTheId) {
    VTaskClient client;
    EXPECT_EQ(client.SetTask(kShowGroupUsers), 1);
    ASSERT_NE(client.GetTask(), nullptr);
    EXPECT_EQ(client.GetTaskId(), kShowGroupUsers);
    EXPECT_EQ(client.GetTask()->GetTaskId(), kShowGroupUsers);
}

TEST_F(ClientOnFakeSockets, SetTaskWithTheCurrentIdKeepsTheTaskAndTheQueue) {
    VTaskClient client;
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    const Bytes block = ListBlock({"kept"});
    ASSERT_EQ(client.AddRequest(block.data(), static_cast<std::int32_t>(block.size())), 1);
    VTask* task = client.GetTask();
    EXPECT_EQ(client.SetTask(kAddUser), 1);
    EXPECT_EQ(client.GetTask(), task);
    ASSERT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 1);
    const Bytes frame = OnlySend(sockets_);
    EXPECT_EQ(Bytes(frame.end() - block.size(), frame.end()), block);
}

TEST_F(ClientOnFakeSockets, SetTaskWithAnUnknownIdLogsAndKeepsThePreviousTaskAndQueue) {
    LogCapture capture;
    VTaskClient client;
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    const Bytes block = ListBlock({"kept"});
    ASSERT_EQ(client.AddRequest(block.data(), static_cast<std::int32_t>(block.size())), 1);
    VTask* task = client.GetTask();
    EXPECT_EQ(client.SetTask(48), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("CreateVTask failed"));
    EXPECT_EQ(client.GetTask(), task);
    EXPECT_EQ(client.GetTaskId(), kAddUser);
    ASSERT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 1);
    const Bytes frame = OnlySend(sockets_);
    EXPECT_EQ(Bytes(frame.end() - block.size(), frame.end()), block);
}

TEST_F(ClientOnFakeSockets, SetTaskWithAnotherIdDropsTheQueuedBlocks) {
    VTaskClient client;
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    const Bytes block = ListBlock({"dropped"});
    ASSERT_EQ(client.AddRequest(block.data(), static_cast<std::int32_t>(block.size())), 1);
    ASSERT_EQ(client.SetTask(kDeleteUser), 1);
    ASSERT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 1);
    EXPECT_EQ(OnlySend(sockets_), Bytes({0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(ClientOnFakeSockets, AddRequestRefusesNullDataWithItsLogLine) {
    LogCapture capture;
    VTaskClient client;
    EXPECT_EQ(client.AddRequest(nullptr, 8), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("AddRequest Parameter error"));
}

TEST_F(ClientOnFakeSockets, AddRequestRefusesALengthBelowOne) {
    LogCapture capture;
    VTaskClient client;
    const Bytes block = ListBlock({"x"});
    EXPECT_EQ(client.AddRequest(block.data(), 0), 0);
    EXPECT_EQ(client.AddRequest(block.data(), -4), 0);
    EXPECT_THAT(capture.Texts(),
                ElementsAre("AddRequest Parameter error", "AddRequest Parameter error"));
}

TEST_F(ClientOnFakeSockets, AddRequestLogsAFailedRecordAllocation) {
    LogCapture capture;
    VTaskClient client;
    const Bytes block = ListBlock({"x"});
    {
        vagent::test::ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(client.AddRequest(block.data(), static_cast<std::int32_t>(block.size())), 0);
    }
    EXPECT_THAT(capture.Texts(), ElementsAre("AddRequest : new REQUEST_DATA failed"));
}

TEST_F(ClientOnFakeSockets, AddRequestLogsAFailedDataAllocationWithItsLength) {
    LogCapture capture;
    VTaskClient client;
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    const Bytes block = ListBlock({"abcd"});
    {
        vagent::test::ScopedAllocationFailure failure(1, 1);
        EXPECT_EQ(client.AddRequest(block.data(), static_cast<std::int32_t>(block.size())), 0);
    }
    EXPECT_THAT(capture.Texts(), ElementsAre("AddRequest : new [12] bytes failed"));
    ASSERT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 1);
    EXPECT_EQ(OnlySend(sockets_).size(), 16u);
}

TEST_F(ClientOnFakeSockets, AddRequestCopiesTheCallersBlock) {
    VTaskClient client;
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    Bytes block = ListBlock({"ab"});
    const Bytes original = block;
    ASSERT_EQ(client.AddRequest(block.data(), static_cast<std::int32_t>(block.size())), 1);
    block.assign(block.size(), 0xEE);
    ASSERT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 1);
    const Bytes frame = OnlySend(sockets_);
    EXPECT_EQ(Bytes(frame.end() - original.size(), frame.end()), original);
}

TEST_F(ClientOnFakeSockets, FrameWithABlockIsLaidOutInNetworkOrder) {
    VTaskClient client;
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    const Bytes block = ListBlock({"ab"});
    ASSERT_EQ(client.AddRequest(block.data(), static_cast<std::int32_t>(block.size())), 1);
    ASSERT_EQ(client.SendRequest(1, "CN=Users", kInvalidSocket, nullptr), 1);
    EXPECT_EQ(OnlySend(sockets_),
              Bytes({0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x08,
                     'C',  'N',  '=',  'U',  's',  'e',  'r',  's',  0x00, 0x00, 0x00, 0x0A,
                     0x00, 0x00, 0x00, 0x06, 0x00, 0x00, 0x00, 0x02, 'a',  'b'}));
}

TEST_F(ClientOnFakeSockets, FrameWithoutABlockEndsWithAZeroLength) {
    VTaskClient client;
    ASSERT_EQ(client.SetTask(kShowGroupUsers), 1);
    ASSERT_EQ(client.SendRequest(-1, "OU=A", kInvalidSocket, nullptr), 1);
    EXPECT_EQ(OnlySend(sockets_),
              Bytes({0x00, 0x00, 0x00, 0x14, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00,
                     0x00, 0x04, 'O',  'U',  '=',  'A',  0x00, 0x00, 0x00, 0x00}));
}

TEST_F(ClientOnFakeSockets, FrameWithoutABlockAndWithAnEmptyRootSiteIsSixteenBytes) {
    VTaskClient client;
    ASSERT_EQ(client.SetTask(42), 1);
    ASSERT_EQ(client.SendRequest(0x01020304, "", kInvalidSocket, nullptr), 1);
    EXPECT_EQ(OnlySend(sockets_), Bytes({0x00, 0x00, 0x00, 0x2A, 0x01, 0x02, 0x03, 0x04, 0x00, 0x00,
                                         0x00, 0x00, 0x00, 0x00, 0x00, 0x00}));
}

TEST_F(ClientOnFakeSockets, OnlyTheFirstQueuedBlockIsSent) {
    VTaskClient client;
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    const Bytes first = ListBlock({"first"});
    const Bytes second = ListBlock({"second"});
    ASSERT_EQ(client.AddRequest(first.data(), static_cast<std::int32_t>(first.size())), 1);
    ASSERT_EQ(client.AddRequest(second.data(), static_cast<std::int32_t>(second.size())), 1);
    ASSERT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 1);
    const Bytes frame = OnlySend(sockets_);
    ASSERT_EQ(frame.size(), 16 + first.size());
    EXPECT_EQ(Bytes(frame.begin() + 16, frame.end()), first);
}

TEST_F(ClientOnFakeSockets, NewConnectionGetsAFiveSecondReceiveLimitAndIsRecorded) {
    {
        VTaskClient client;
        ASSERT_EQ(client.SetTask(kAddUser), 1);
        ASSERT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 1);
        EXPECT_EQ(sockets_.receiveTimeLimit, 5000u);
        EXPECT_EQ(client.GetConnection(), ScriptedSockets::kOpenedSocket);
        EXPECT_EQ(sockets_.sentOn, std::vector<std::uintptr_t>{ScriptedSockets::kOpenedSocket});
    }
    EXPECT_EQ(sockets_.shutdowns, 1);
    EXPECT_EQ(sockets_.closed, std::vector<std::uintptr_t>{ScriptedSockets::kOpenedSocket});
    EXPECT_EQ(sockets_.cleanups, 1);
}

TEST_F(ClientOnFakeSockets, GivenConnectionIsUsedRecordedAndClosedByTheClient) {
    constexpr std::uintptr_t kGiven = 501;
    {
        VTaskClient client;
        ASSERT_EQ(client.SetTask(kAddUser), 1);
        ASSERT_EQ(client.SendRequest(0, "", kGiven, nullptr), 1);
        EXPECT_EQ(client.GetConnection(), kGiven);
    }
    EXPECT_EQ(sockets_.opens, 0);
    EXPECT_EQ(sockets_.sentOn, std::vector<std::uintptr_t>{kGiven});
    EXPECT_EQ(sockets_.closed, std::vector<std::uintptr_t>{kGiven});
}

TEST_F(ClientOnFakeSockets, NoSocketLogsSocketFailedThenConnectServerFailed) {
    LogCapture capture;
    sockets_.openStatus = 10024;
    VTaskClient client;
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    EXPECT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("socket failed", "ConnectServer failed"));
    EXPECT_EQ(client.GetLastStatus(), 10024u);
    EXPECT_THAT(sockets_.sends, IsEmpty());
}

TEST_F(ClientOnFakeSockets, RefusedConnectLogsConnectFailedClosesTheSocketAndFails) {
    LogCapture capture;
    sockets_.connectStatus = vagent::os::kSocketConnectionRefused;
    VTaskClient client;
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    EXPECT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("connect failed", "ConnectServer failed"));
    EXPECT_EQ(client.GetLastStatus(), 10061u);
    EXPECT_EQ(sockets_.closed, std::vector<std::uintptr_t>{ScriptedSockets::kOpenedSocket});
    EXPECT_EQ(client.GetConnection(), kInvalidSocket);
    EXPECT_THAT(sockets_.sends, IsEmpty());
}

TEST_F(ClientOnFakeSockets, ConnectServerAloneGivesTheInvalidSocketWhenRefused) {
    LogCapture capture;
    sockets_.connectStatus = vagent::os::kSocketConnectionRefused;
    EXPECT_EQ(VTaskClient::ConnectServer("10.9.9.9", 7), kInvalidSocket);
    EXPECT_EQ(sockets_.connectedAddress, "10.9.9.9");
    EXPECT_EQ(sockets_.connectedPort, 7);
    EXPECT_THAT(capture.Texts(), ElementsAre("connect failed"));
}

TEST_F(ClientOnFakeSockets, ReceiveLimitThatCannotBeSetIsLoggedAndTheSendGoesOn) {
    LogCapture capture;
    sockets_.timeoutStatus = vagent::os::kSocketInvalidArgument;
    VTaskClient client;
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    EXPECT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 1);
    EXPECT_THAT(capture.Texts(), ElementsAre("setsockopt failed"));
    EXPECT_EQ(sockets_.sends.size(), 1u);
}

TEST_F(ClientOnFakeSockets, ShortSendLogsAndLeavesTheNewSocketUnrecorded) {
    LogCapture capture;
    sockets_.sendShortBy = 1;
    {
        VTaskClient client;
        ASSERT_EQ(client.SetTask(kAddUser), 1);
        EXPECT_EQ(client.SendRequest(0, "", kInvalidSocket, nullptr), 0);
        EXPECT_EQ(client.GetConnection(), kInvalidSocket);
        EXPECT_NE(client.GetLastStatus(), 0u);
    }
    EXPECT_THAT(capture.Texts(), ElementsAre("Send Data of Request failed"));
    EXPECT_THAT(sockets_.closed, IsEmpty());
}

namespace {

struct SendHookRecord {
    int calls = 0;
    std::uintptr_t socket = 0;
    int count = 0;
    int answer = 0;
} sendHook;

int RecordBeforeSend(std::uintptr_t socket, int count) {
    ++sendHook.calls;
    sendHook.socket = socket;
    sendHook.count = count;
    return sendHook.answer;
}

}  // namespace

TEST_F(ClientOnFakeSockets, BeforeSendRefusalSendsNothing) {
    sendHook = SendHookRecord{};
    HTTP_FUN hooks{RecordBeforeSend, nullptr, nullptr};
    VTaskClient client;
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    EXPECT_EQ(client.SendRequest(0, "CN=Users", kInvalidSocket, &hooks), 0);
    EXPECT_THAT(sockets_.sends, IsEmpty());
    EXPECT_EQ(sendHook.calls, 1);
    EXPECT_EQ(sendHook.socket, kInvalidSocket);
    EXPECT_EQ(sendHook.count, 24);
    EXPECT_EQ(client.GetConnection(), kInvalidSocket);
}

TEST_F(ClientOnFakeSockets, BeforeSendIsToldTheGivenConnectionAndTheFrameLength) {
    sendHook = SendHookRecord{};
    sendHook.answer = 1;
    HTTP_FUN hooks{RecordBeforeSend, nullptr, nullptr};
    VTaskClient client;
    ASSERT_EQ(client.SetTask(kAddUser), 1);
    EXPECT_EQ(client.SendRequest(0, "", 600, &hooks), 1);
    EXPECT_EQ(sendHook.socket, 600u);
    EXPECT_EQ(sendHook.count, 16);
    EXPECT_EQ(sockets_.sends.size(), 1u);
}

TEST_F(ClientOnFakeSockets, NonZeroStatusIsReturnedAsItArrivesWithNoFurtherReads) {
    VTaskClient& client = SentClient(kAddUser);
    sockets_.reply = Concat({{0x05, 0x00, 0x00, 0x00}, Reply(0, 4, kAckOne)});
    std::uint32_t ack = 9;
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 5u);
    EXPECT_EQ(sockets_.receives, 1);
    EXPECT_EQ(sockets_.replyOffset, 4u);
    EXPECT_EQ(ack, 9u);
}

TEST_F(ClientOnFakeSockets, StatusWordIsReadLittleEndian) {
    VTaskClient& client = SentClient(kAddUser);
    sockets_.reply = {0x00, 0x00, 0x00, 0x05};
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 0x05000000u);
}

TEST_F(ClientOnFakeSockets, ZeroLengthLogsDataLenErrorAndGivesTheLengthCode) {
    LogCapture capture;
    VTaskClient& client = SentClient(kAddUser);
    sockets_.reply = Reply(0, 0, {});
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 0xE6000004u);
    EXPECT_THAT(capture.Texts(), ElementsAre("Data Len Error : 0"));
}

TEST_F(ClientOnFakeSockets, NegativeLengthIsADataLenError) {
    LogCapture capture;
    VTaskClient& client = SentClient(kAddUser);
    sockets_.reply = Reply(0, -5, {});
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 0xE6000004u);
    EXPECT_THAT(capture.Texts(), ElementsAre("Data Len Error : -5"));
}

TEST_F(ClientOnFakeSockets, PayloadThatCannotBeAllocatedGivesEightAndItsLogLine) {
    LogCapture capture;
    VTaskClient& client = SentClient(kAddUser);
    sockets_.reply = Reply(0, 4, kAckOne);
    std::uint32_t ack = 0;
    {
        vagent::test::ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 8u);
    }
    EXPECT_THAT(capture.Texts(), ElementsAre("GetTaskResult : new [4] bytes failed"));
    EXPECT_EQ(sockets_.replyOffset, 8u);
}

TEST_F(ClientOnFakeSockets, HugeAnnouncedLengthIsRefusedBeforeAnythingIsAllocated) {
    LogCapture capture;
    VTaskClient& client = SentClient(kAddUser);
    sockets_.reply = Reply(0, 0x7FFFFFFF, kAckOne);
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 8u);
    EXPECT_THAT(capture.Texts(), ElementsAre("GetTaskResult : new [2147483647] bytes failed"));
    EXPECT_EQ(sockets_.receives, 2);
}

TEST_F(ClientOnFakeSockets, ReceiveFailureGivesTheSocketStatus) {
    VTaskClient& client = SentClient(kAddUser);
    sockets_.reply = {0x00, 0x00};
    sockets_.endOfReplyStatus = vagent::os::kSocketConnectionReset;
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 10054u);
}

TEST_F(ClientOnFakeSockets, ConnectionClosedInsideThePayloadIsAReceiveDataError) {
    VTaskClient& client = SentClient(kAddUser);
    sockets_.reply = Reply(0, 4, {0x00, 0x00});
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 0xE6000003u);
}

TEST_F(ClientOnFakeSockets, ReplyArrivingByteByByteIsGatheredWhole) {
    VTaskClient& client = SentClient(kAddUser);
    sockets_.reply = Reply(0, 4, kAckOne);
    sockets_.receiveChunk = 1;
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 0u);
    EXPECT_EQ(ack, 1u);
    EXPECT_EQ(sockets_.receives, 12);
}

TEST_F(ClientOnFakeSockets, GoodReplyIsDecodedByTheTask) {
    VTaskClient& client = SentClient(kShowGroupUsers);
    const Bytes block = ListBlock({"alice", "bob"});
    sockets_.reply = Concat({StatusWord(0), block});
    std::vector<std::string> users;
    EXPECT_EQ(client.GetTaskResult(&users, nullptr), 0u);
    EXPECT_THAT(users, ElementsAre("alice", "bob"));
}

TEST_F(ClientOnFakeSockets, DecodingFailureGivesTheTasksErrorCode) {
    VTaskClient& client = SentClient(1);
    // A user task that ran without a request holds 0xE6000002.
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(client.GetTask()->DoTask(&data, &size), 0);
    delete[] data;
    ASSERT_EQ(client.GetTask()->GetErrorCode(), 0xE6000002u);
    sockets_.reply = Reply(0, 5, {0x00, 0x00, 0x00, 0x09, 'x'});
    std::vector<_VXUserInfoA> users;
    EXPECT_EQ(client.GetTaskResult(&users, nullptr), 0xE6000002u);
}

TEST_F(ClientOnFakeSockets, DecodingFailureOfATaskWithoutCodeReadsAsZero) {
    LogCapture capture;
    VTaskClient& client = SentClient(kAddUser);
    sockets_.reply = Reply(0, 5, {0x00, 0x00, 0x00, 0x01, 0x02});
    std::uint32_t ack = 7;
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 0u);
    EXPECT_EQ(ack, 7u);
    EXPECT_THAT(capture.Texts(), ElementsAre("Result2Ack : dwData != sizeof DWORD "));
}

TEST_F(ClientOnFakeSockets, ResultWithoutATaskIsAnInvalidParameter) {
    VTaskClient client;
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, nullptr), 0xE6000001u);
    EXPECT_EQ(sockets_.receives, 0);
}

TEST_F(ClientOnFakeSockets, RecvAllGathersTheWholeCount) {
    sockets_.reply = {1, 2, 3, 4, 5, 6};
    sockets_.receiveChunk = 4;
    std::uint8_t buffer[6] = {};
    EXPECT_EQ(VTaskClient::RecvAll(9, buffer, 6, 0, 1800), 1);
    EXPECT_EQ(Bytes(buffer, buffer + 6), Bytes({1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(sockets_.receives, 2);
}

TEST_F(ClientOnFakeSockets, RecvAllEndsWithZeroWhenThePeerCloses) {
    sockets_.reply = {1, 2};
    std::uint8_t buffer[6] = {};
    EXPECT_EQ(VTaskClient::RecvAll(9, buffer, 6, 0, 1800), 0);
}

namespace {

// What the receive hooks saw and what they answer.
struct ReceiveHookScript {
    int retriesLeft = 0;
    int beforeCalls = 0;
    // When positive, each before-receive call lowers the count to this.
    int lowerTo = 0;
    // When positive, only calls wanting this many bytes are lowered.
    int lowerOnlyWhen = 0;
    int failOnCall = 0;
    std::vector<int> wanted;
    std::vector<int> afterCounts;
} receiveHooks;

int ScriptedBeforeRecv(std::uintptr_t, int* count) {
    ++receiveHooks.beforeCalls;
    if (receiveHooks.failOnCall == receiveHooks.beforeCalls) {
        return 0;
    }
    if (receiveHooks.retriesLeft > 0) {
        --receiveHooks.retriesLeft;
        return 2;
    }
    receiveHooks.wanted.push_back(*count);
    const bool lower = receiveHooks.lowerTo != 0 &&
                       (receiveHooks.lowerOnlyWhen == 0 || *count == receiveHooks.lowerOnlyWhen);
    if (lower && *count > receiveHooks.lowerTo) {
        *count = receiveHooks.lowerTo;
    }
    return 1;
}

int RecordAfterRecv(int count) {
    receiveHooks.afterCounts.push_back(count);
    return 0;
}

HTTP_FUN ReceiveHooks() {
    return HTTP_FUN{nullptr, ScriptedBeforeRecv, RecordAfterRecv};
}

}  // namespace

TEST_F(ClientOnFakeSockets, BeforeReceiveAskingForARetryIsCalledAgain) {
    receiveHooks = ReceiveHookScript{};
    receiveHooks.retriesLeft = 3;
    HTTP_FUN hooks = ReceiveHooks();
    VTaskClient& client = SentClient(kAddUser);
    sockets_.reply = Reply(0, 4, kAckOne);
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, &hooks), 0u);
    EXPECT_EQ(ack, 1u);
    EXPECT_EQ(receiveHooks.beforeCalls, 6);
    EXPECT_THAT(receiveHooks.wanted, ElementsAre(4, 4, 4));
    EXPECT_THAT(receiveHooks.afterCounts, ElementsAre(4, 4, 4));
}

TEST_F(ClientOnFakeSockets, BeforeReceiveLoweringThePayloadCountReadsItInParts) {
    receiveHooks = ReceiveHookScript{};
    // The payload is 12 bytes: the hook lets 2 through, then the 10 still
    // wanted follow whole, landing after the first 2.
    receiveHooks.lowerTo = 2;
    receiveHooks.lowerOnlyWhen = 12;
    HTTP_FUN hooks = ReceiveHooks();
    VTaskClient& client = SentClient(kShowGroupUsers);
    const Bytes block = ListBlock({"ab", "cd"});
    ASSERT_EQ(block.size(), 16u);
    sockets_.reply = Concat({StatusWord(0), block});
    std::vector<std::string> items;
    EXPECT_EQ(client.GetTaskResult(&items, &hooks), 0u);
    EXPECT_THAT(items, ElementsAre("ab", "cd"));
    EXPECT_THAT(receiveHooks.wanted, ElementsAre(4, 4, 12, 10));
    EXPECT_THAT(receiveHooks.afterCounts, ElementsAre(4, 4, 2, 10));
}

TEST_F(ClientOnFakeSockets, LoweredHeaderCountPlacesTheRestAtFourTimesTheBytesReceived) {
    receiveHooks = ReceiveHookScript{};
    receiveHooks.lowerTo = 2;
    receiveHooks.lowerOnlyWhen = 4;
    HTTP_FUN hooks = ReceiveHooks();
    VTaskClient& client = SentClient(kAddUser);
    // 05 00 arrive first; 00 07 land eight bytes in, outside the word.
    sockets_.reply = {0x05, 0x00, 0x00, 0x07};
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, &hooks), 5u);
    EXPECT_THAT(receiveHooks.wanted, ElementsAre(4, 2));
    EXPECT_THAT(receiveHooks.afterCounts, ElementsAre(2, 2));
}

TEST_F(ClientOnFakeSockets, BeforeReceiveFailureEndsTheCallWithoutReading) {
    receiveHooks = ReceiveHookScript{};
    receiveHooks.failOnCall = 1;
    HTTP_FUN hooks = ReceiveHooks();
    VTaskClient& client = SentClient(kAddUser);
    sockets_.reply = Reply(0, 4, kAckOne);
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, &hooks), 0xE6000003u);
    EXPECT_EQ(sockets_.receives, 0);
}

namespace {

int AskForNothing(std::uintptr_t, int* count) {
    *count = 0;
    return 1;
}

}  // namespace

TEST_F(ClientOnFakeSockets, BeforeReceiveAskingForNothingFailsInsteadOfLoopingForever) {
    HTTP_FUN hooks{nullptr, AskForNothing, nullptr};
    VTaskClient& client = SentClient(kAddUser);
    sockets_.reply = Reply(0, 4, kAckOne);
    std::uint32_t ack = 0;
    EXPECT_EQ(client.GetTaskResult(&ack, &hooks), 10022u);
}
