#include "vagent/VSessionTask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "helpers/LogCapture.h"
#include "sessions/TaskHarness.h"
#include "vagent/SessionTable.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::DecodeAnswer;
using vagent::test::FakeSessionHost;
using vagent::test::GiveRequest;
using vagent::test::ListBlock;
using vagent::test::LogCapture;
using vagent::test::RunDoTask;
using vagent::test::TaskAnswer;

namespace {

constexpr char kWinStationKey[] =
    "SYSTEM\\CurrentControlSet\\Control\\Terminal Server\\WinStations\\VXP";
constexpr char kTerminalServerKey[] = "SYSTEM\\CurrentControlSet\\Control\\Terminal Server";

TaskAnswer RunWithItems(std::uint32_t id, const std::vector<std::string>& items) {
    VSessionTask task(id);
    std::vector<std::uint8_t> block = ListBlock(items);
    GiveRequest(task, block);
    return RunDoTask(task);
}

std::uint32_t AcknowledgementThroughClient(std::uint32_t id, const TaskAnswer& answer) {
    VSessionTask client(id);
    std::uint32_t value = 99;
    EXPECT_EQ(DecodeAnswer(client, answer, &value), 1);
    return value;
}

void AddSystemSessions(FakeSessionHost& host) {
    host.server.AddSession(1, "VXP#1", vagent::os::kSessionActive);
    host.server.AddSession(2, "Console", vagent::os::kSessionActive);
    host.server.AddSession(3, "vxp#3", vagent::os::kSessionActive);
}

}  // namespace

TEST(VSessionTask, DoTaskRefusesNullOutputs) {
    LogCapture capture;
    VSessionTask task(24);
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(task.DoTask(nullptr, &size), 0);
    EXPECT_EQ(task.DoTask(&data, nullptr), 0);
    EXPECT_THAT(capture.Texts(),
                ElementsAre("DoTask : Parameter Error", "DoTask : Parameter Error"));
}

TEST(VSessionTask, IdsOutsideTheFamilyAnswerZeroWithNoBlock) {
    FakeSessionHost host;
    for (std::uint32_t id : {0u, 23u, 27u, 31u, 34u, 35u, 37u, 42u, 44u}) {
        const TaskAnswer answer = RunWithItems(id, {"1", "1"});
        EXPECT_EQ(answer.truth, 0) << id;
        EXPECT_TRUE(answer.block.empty()) << id;
    }
}

TEST(VSessionTask, Result2StructRefusesMissingArgumentsAndUnservedIds) {
    LogCapture capture;
    const std::uint8_t payload[4] = {0, 0, 0, 1};
    int count = 0;
    VSessionTask counts(24);
    EXPECT_EQ(counts.Result2Struct(nullptr, 4, &count), 0);
    EXPECT_EQ(counts.Result2Struct(payload, 0, &count), 0);
    EXPECT_EQ(counts.Result2Struct(payload, 4, nullptr), 0);
    VSessionTask unserved(27);
    EXPECT_EQ(unserved.Result2Struct(payload, 4, &count), 0);
    EXPECT_THAT(capture.Texts(),
                ElementsAre("Result2Struct : Parameter Error", "Result2Struct : Parameter Error",
                            "Result2Struct : Parameter Error"));
}

TEST(VSessionTask, RoundTripOfTask24CountsSystemSessions) {
    FakeSessionHost host;
    AddSystemSessions(host);
    VSessionTask service(24);
    const TaskAnswer answer = RunDoTask(service);
    EXPECT_EQ(answer.truth, 1);
    EXPECT_EQ(answer.block, (std::vector<std::uint8_t>{0, 0, 0, 4, 0, 0, 0, 2}));
    VSessionTask client(24);
    int count = 0;
    EXPECT_EQ(DecodeAnswer(client, answer, &count), 1);
    EXPECT_EQ(count, 2);
}

TEST(VSessionTask, RoundTripOfTask25CountsAllSessions) {
    FakeSessionHost host;
    AddSystemSessions(host);
    VSessionTask service(25);
    const TaskAnswer answer = RunDoTask(service);
    EXPECT_EQ(answer.truth, 1);
    VSessionTask client(25);
    int count = 0;
    EXPECT_EQ(DecodeAnswer(client, answer, &count), 1);
    EXPECT_EQ(count, 3);
}

TEST(VSessionTask, FailedCountTravelsAsMinusOneAndAnswersZero) {
    FakeSessionHost host;
    host.server.enumerateStatus = 5;
    for (std::uint32_t id : {24u, 25u}) {
        VSessionTask service(id);
        const TaskAnswer answer = RunDoTask(service);
        EXPECT_EQ(answer.truth, 0);
        EXPECT_EQ(answer.block, (std::vector<std::uint8_t>{0, 0, 0, 4, 0xFF, 0xFF, 0xFF, 0xFF}));
        VSessionTask client(id);
        int count = 0;
        EXPECT_EQ(DecodeAnswer(client, answer, &count), 0);
        EXPECT_EQ(count, -1);
    }
}

TEST(VSessionTask, CountBlockOfFiveBytesIsRefused) {
    LogCapture capture;
    VSessionTask client(24);
    const std::uint8_t five[5] = {0, 0, 0, 2, 0};
    int count = 0;
    EXPECT_EQ(client.Result2Struct(five, 5, &count), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("Result2SessionCount : Parameter Error"));
}

TEST(VSessionTask, RoundTripOfTask26ListsTheTablesRecords) {
    FakeSessionHost host;
    host.server.AddSession(11, "VXP#11", vagent::os::kSessionActive);
    host.server.AddSession(12, "Console", vagent::os::kSessionActive);
    std::map<int, _VXSessionA> records;
    records[11] = _VXSessionA{11, "alpha", "00-1A-2B-3C-4D-5E", "beta", "172.16.0.11"};
    records[12] = _VXSessionA{12, "gamma", "00-1A-2B-3C-4D-5F", "delta", "172.16.0.12"};
    SetSessionInfo(&records, nullptr);
    VSessionTask service(26);
    const TaskAnswer answer = RunDoTask(service);
    EXPECT_EQ(answer.truth, 1);
    VSessionTask client(26);
    std::vector<_VXSessionA> sessions;
    ASSERT_EQ(DecodeAnswer(client, answer, &sessions), 1);
    ASSERT_EQ(sessions.size(), 1u);
    EXPECT_EQ(sessions[0].sessionId, 11);
    EXPECT_EQ(sessions[0].info1, "alpha");
    EXPECT_EQ(sessions[0].macAddress, "00-1A-2B-3C-4D-5E");
    EXPECT_EQ(sessions[0].info3, "beta");
    EXPECT_EQ(sessions[0].clientAddress, "172.16.0.11");
}

TEST(VSessionTask, Task26WithNoListedSessionAnswersOneWithNoBlock) {
    LogCapture capture;
    FakeSessionHost host;
    host.server.AddSession(12, "Console", vagent::os::kSessionActive);
    VSessionTask service(26);
    const TaskAnswer answer = RunDoTask(service);
    EXPECT_EQ(answer.truth, 1);
    EXPECT_TRUE(answer.block.empty());
    EXPECT_THAT(capture.Texts(), ElementsAre("SessionInfo2Result : dwSize = [0]"));
}

TEST(VSessionTask, Task26WhenSessionsCannotBeListedAnswersZeroWithNoBlock) {
    FakeSessionHost host;
    host.server.enumerateStatus = 5;
    VSessionTask service(26);
    const TaskAnswer answer = RunDoTask(service);
    EXPECT_EQ(answer.truth, 0);
    EXPECT_TRUE(answer.block.empty());
}

TEST(VSessionTask, RoundTripOfTask32ReadsASetting) {
    FakeSessionHost host;
    host.registry.SetNumber(kWinStationKey, "PortNumber", 3390);
    const TaskAnswer answer = RunWithItems(32, {"1"});
    EXPECT_EQ(answer.truth, 1);
    VSessionTask client(32);
    std::vector<std::string> strings;
    ASSERT_EQ(DecodeAnswer(client, answer, &strings), 1);
    EXPECT_THAT(strings, ElementsAre("1", "3390"));
}

TEST(VSessionTask, Task32OfAnUnreadableSettingSendsZeroForTheValue) {
    FakeSessionHost host;
    const TaskAnswer answer = RunWithItems(32, {"2"});
    VSessionTask client(32);
    std::vector<std::string> strings;
    ASSERT_EQ(DecodeAnswer(client, answer, &strings), 1);
    EXPECT_THAT(strings, ElementsAre("0", "0"));
}

TEST(VSessionTask, RoundTripOfTask33WritesASetting) {
    LogCapture capture;
    FakeSessionHost host;
    host.registry.AddKey(kWinStationKey);
    const TaskAnswer answer = RunWithItems(33, {"5", "900000"});
    EXPECT_EQ(answer.truth, 1);
    VSessionTask client(33);
    std::vector<std::string> strings;
    ASSERT_EQ(DecodeAnswer(client, answer, &strings), 1);
    EXPECT_THAT(strings, ElementsAre("1"));
    std::uint32_t stored = 0;
    ASSERT_TRUE(host.registry.Number(kWinStationKey, "MaxIdleTime", stored));
    EXPECT_EQ(stored, 900000u);
    EXPECT_THAT(capture.Texts(), ElementsAre("SetSysSetting type=5, value=900000"));
}

TEST(VSessionTask, Task33ThatFailsAnswersTheResultZeroInTheList) {
    FakeSessionHost host;
    const TaskAnswer answer = RunWithItems(33, {"1", "3389"});
    VSessionTask client(33);
    std::vector<std::string> strings;
    ASSERT_EQ(DecodeAnswer(client, answer, &strings), 1);
    EXPECT_THAT(strings, ElementsAre("0"));
    EXPECT_FALSE(host.registry.HasKey(kWinStationKey));
}

TEST(VSessionTask, SettingTasksWithTheWrongNumberOfItemsAnswerZeroWithNoBlock) {
    FakeSessionHost host;
    host.registry.SetNumber(kTerminalServerKey, "fSingleSessionPerUser", 1);
    for (const auto& request : std::vector<std::pair<std::uint32_t, std::vector<std::string>>>{
             {32, {"0", "0"}}, {33, {"0"}}, {33, {"0", "1", "2"}}}) {
        const TaskAnswer answer = RunWithItems(request.first, request.second);
        EXPECT_EQ(answer.truth, 0) << request.first;
        EXPECT_TRUE(answer.block.empty()) << request.first;
    }
    std::uint32_t stored = 0;
    ASSERT_TRUE(host.registry.Number(kTerminalServerKey, "fSingleSessionPerUser", stored));
    EXPECT_EQ(stored, 1u);
}

TEST(VSessionTask, RoundTripOfTask36LogsOffWithANonZeroFlag) {
    FakeSessionHost host;
    host.server.AddSession(4, "VXP#4", vagent::os::kSessionActive);
    const TaskAnswer answer = RunWithItems(36, {"4", "1"});
    EXPECT_EQ(answer.truth, 1);
    EXPECT_EQ(AcknowledgementThroughClient(36, answer), 1u);
    ASSERT_EQ(host.server.logoffs.size(), 1u);
    EXPECT_EQ(host.server.logoffs[0].sessionId, 4u);
}

TEST(VSessionTask, Task36WithAZeroFlagDisconnects) {
    FakeSessionHost host;
    host.server.AddSession(4, "VXP#4", vagent::os::kSessionActive);
    const TaskAnswer answer = RunWithItems(36, {"4", "0"});
    EXPECT_EQ(answer.Ack(), 1);
    ASSERT_EQ(host.server.disconnects.size(), 1u);
    EXPECT_EQ(host.server.disconnects[0].sessionId, 4u);
    EXPECT_THAT(host.server.logoffs, IsEmpty());
}

TEST(VSessionTask, Task36ThatFailsIsAcknowledgedWithZero) {
    FakeSessionHost host;
    const TaskAnswer answer = RunWithItems(36, {"4", "1"});
    EXPECT_EQ(answer.truth, 0);
    EXPECT_EQ(answer.Ack(), 0);
}

TEST(VSessionTask, Task36WithOneItemIsAcknowledgedWithOneAndNobodyIsLoggedOff) {
    FakeSessionHost host;
    host.server.AddSession(4, "VXP#4", vagent::os::kSessionActive);
    const TaskAnswer answer = RunWithItems(36, {"4"});
    EXPECT_EQ(answer.truth, 1);
    EXPECT_EQ(answer.Ack(), 1);
    EXPECT_THAT(host.server.logoffs, IsEmpty());
    EXPECT_THAT(host.server.disconnects, IsEmpty());
}

TEST(VSessionTask, RoundTripOfTask43MessagesSystemSessions) {
    FakeSessionHost host;
    AddSystemSessions(host);
    const TaskAnswer answer = RunWithItems(43, {"Maintenance", "Please log off"});
    EXPECT_EQ(answer.truth, 1);
    EXPECT_EQ(AcknowledgementThroughClient(43, answer), 1u);
    ASSERT_EQ(host.server.messages.size(), 2u);
    EXPECT_EQ(host.server.messages[0].sessionId, 3u);
    EXPECT_EQ(host.server.messages[0].title, "Maintenance");
    EXPECT_EQ(host.server.messages[0].message, "Please log off");
    EXPECT_EQ(host.server.messages[1].sessionId, 1u);
}

TEST(VSessionTask, Task43IsAcknowledgedWithOneEvenWhenNoSessionReceivedTheMessage) {
    FakeSessionHost host;
    host.server.enumerateStatus = 5;
    const TaskAnswer answer = RunWithItems(43, {"t", "m"});
    EXPECT_EQ(answer.truth, 1);
    EXPECT_EQ(answer.Ack(), 1);
    EXPECT_THAT(host.server.messages, IsEmpty());
}

TEST(VSessionTask, Task43IsAcknowledgedWithOneWhenNoSessionBelongsToThisSystem) {
    FakeSessionHost host;
    host.server.AddSession(0, "Services", vagent::os::kSessionDisconnected);
    host.server.AddSession(1, "Console", vagent::os::kSessionActive);
    const TaskAnswer answer = RunWithItems(43, {"t", "m"});
    EXPECT_EQ(answer.truth, 1);
    EXPECT_EQ(answer.Ack(), 1);
    EXPECT_THAT(host.server.messages, IsEmpty());
}

TEST(VSessionTask, RoundTripOfTask40WritesTheSwitchBesideTheExecutable) {
    FakeSessionHost host;
    const TaskAnswer answer = RunWithItems(40, {"1"});
    EXPECT_EQ(answer.truth, 1);
    EXPECT_EQ(AcknowledgementThroughClient(40, answer), 1u);
    EXPECT_NE(host.ExecutableConfig().find("SSOEnabled=1"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(host.LibraryConfigFile()));
}

TEST(VSessionTask, RoundTripOfTask41WritesTheZ9SwitchBesideTheExecutable) {
    FakeSessionHost host;
    const TaskAnswer answer = RunWithItems(41, {"0"});
    EXPECT_EQ(answer.truth, 1);
    EXPECT_EQ(AcknowledgementThroughClient(41, answer), 1u);
    EXPECT_NE(host.ExecutableConfig().find("Z9SSOEnabled=0"), std::string::npos);
}

TEST(VSessionTask, Task40WithoutTheExecutablesPathIsAcknowledgedWithZero) {
    FakeSessionHost host;
    host.host.moduleStatus = 2;
    const TaskAnswer answer = RunWithItems(40, {"1"});
    EXPECT_EQ(answer.truth, 0);
    EXPECT_EQ(answer.Ack(), 0);
}

TEST(VSessionTask, AcknowledgedTasksWithoutARequestAnswerZero) {
    FakeSessionHost host;
    host.server.AddSession(4, "VXP#4", vagent::os::kSessionActive);
    for (std::uint32_t id : {36u, 40u, 41u, 43u}) {
        VSessionTask task(id);
        const TaskAnswer answer = RunDoTask(task);
        EXPECT_EQ(answer.truth, 0) << id;
        EXPECT_EQ(answer.Ack(), 0) << id;
    }
    EXPECT_THAT(host.server.logoffs, IsEmpty());
    EXPECT_THAT(host.server.messages, IsEmpty());
}

TEST(VSessionTask, MalformedRequestsAreRefusedWithinTheirBounds) {
    LogCapture capture;
    FakeSessionHost host;
    host.server.AddSession(4, "VXP#4", vagent::os::kSessionActive);
    host.registry.AddKey(kWinStationKey);
    // Each is given to the task in a buffer of exactly its size, so that the
    // sanitised build catches any read past it.
    const std::vector<std::vector<std::uint8_t>> malformed = {
        {},
        {0, 0},
        {0, 0, 0, 0},
        {0, 0, 0, 5, 0, 0, 0, 9, 'a'},
        {0, 0, 0, 6, 0, 0, 0, 1, '4', 0},
        {0, 0, 0, 3, 0xFF, 0xFF, 0xFF},
        {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xF0},
    };
    for (std::uint32_t id : {24u, 25u, 26u, 32u, 33u, 36u, 40u, 41u, 43u}) {
        for (std::vector<std::uint8_t> block : malformed) {
            VSessionTask task(id);
            if (!block.empty()) {
                GiveRequest(task, block);
            }
            const TaskAnswer answer = RunDoTask(task);
            if (id == 32 || id == 33) {
                EXPECT_EQ(answer.truth, 0) << id;
                EXPECT_TRUE(answer.block.empty()) << id;
            } else if (id >= 36) {
                EXPECT_EQ(answer.Ack(), 0) << id;
            }
        }
    }
    EXPECT_THAT(host.server.logoffs, IsEmpty());
    EXPECT_THAT(host.server.disconnects, IsEmpty());
    EXPECT_THAT(host.server.messages, IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(host.ExecutableConfigFile()));
}

TEST(VSessionTask, MalformedResultsAreRefusedWithinTheirBounds) {
    const std::vector<std::vector<std::uint8_t>> malformed = {
        {0},
        {0, 0, 0},
        {0, 0, 0, 9, 'a'},
        {0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 3},
        {0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 2, 'a'},
    };
    for (std::uint32_t id : {24u, 25u, 26u, 32u, 33u, 36u, 40u, 41u, 43u}) {
        for (const std::vector<std::uint8_t>& payload : malformed) {
            VSessionTask client(id);
            // A buffer of exactly the payload's size, as in the request test.
            std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[payload.size()]);
            std::copy(payload.begin(), payload.end(), bytes.get());
            int count = 0;
            std::uint32_t ack = 0;
            std::vector<_VXSessionA> sessions;
            std::vector<std::string> strings;
            void* output = &ack;
            if (id == 24 || id == 25) {
                output = &count;
            } else if (id == 26) {
                output = &sessions;
            } else if (id == 32 || id == 33) {
                output = &strings;
            }
            const auto length = static_cast<std::uint32_t>(payload.size());
            EXPECT_EQ(client.Result2Struct(bytes.get(), length, output), 0) << id;
        }
    }
}
