#include "sessions/SessionOperations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/LogCapture.h"
#include "os/Status.h"
#include "sessions/TaskHarness.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::FakeSessionHost;
using vagent::test::LogCapture;

namespace {

_VXSessionA Record(int id, const std::string& mac) {
    _VXSessionA record;
    record.sessionId = id;
    record.info1 = "info1-" + std::to_string(id);
    record.macAddress = mac;
    record.info3 = "info3-" + std::to_string(id);
    record.clientAddress = "10.0.0." + std::to_string(id);
    return record;
}

std::vector<int> IdsOf(const std::vector<_VXSessionA>& sessions) {
    std::vector<int> ids;
    for (const _VXSessionA& session : sessions) {
        ids.push_back(session.sessionId);
    }
    return ids;
}

}  // namespace

TEST(SessionCounts, CountsSystemSessionsInAnyCaseAndAllSessions) {
    FakeSessionHost host;
    host.server.AddSession(1, "vxp#1", vagent::os::kSessionActive);
    host.server.AddSession(2, "VXP#2", vagent::os::kSessionActive);
    host.server.AddSession(3, "Console", vagent::os::kSessionActive);
    EXPECT_EQ(vagent::GetSessionCounts(), 2);
    EXPECT_EQ(vagent::GetSessionCountsAll(), 3);
}

TEST(SessionCounts, EnumeratesTheCurrentServerWithReservedZeroAndVersionOne) {
    FakeSessionHost host;
    vagent::GetSessionCounts();
    ASSERT_EQ(host.server.enumerations.size(), 1u);
    EXPECT_EQ(host.server.enumerations[0].reserved, 0u);
    EXPECT_EQ(host.server.enumerations[0].version, 1u);
}

TEST(SessionCounts, NameShorterThanThePrefixIsNotASystemSession) {
    FakeSessionHost host;
    host.server.AddSession(1, "VXP", vagent::os::kSessionActive);
    host.server.AddSession(2, "", vagent::os::kSessionActive);
    EXPECT_EQ(vagent::GetSessionCounts(), 0);
}

TEST(SessionCounts, FailedEnumerationGivesMinusOneSilentlyForTheSystemCount) {
    LogCapture capture;
    FakeSessionHost host;
    host.server.enumerateStatus = vagent::os::kAccessDenied;
    EXPECT_EQ(vagent::GetSessionCounts(), -1);
    EXPECT_THAT(capture.Texts(), IsEmpty());
}

TEST(SessionCounts, FailedEnumerationOfAllSessionsIsLogged) {
    LogCapture capture;
    FakeSessionHost host;
    host.server.enumerateStatus = vagent::os::kAccessDenied;
    EXPECT_EQ(vagent::GetSessionCountsAll(), -1);
    EXPECT_THAT(capture.Texts(), ElementsAre("GetSessionCountsAll : WTSEnumerateSessions failed"));
}

TEST(SessionInfo, ListsDisconnectedSessionsWhateverTheirNameAndActiveOnesNamedVxpExactly) {
    FakeSessionHost host;
    host.server.AddSession(3, "vxp#3", vagent::os::kSessionActive);
    host.server.AddSession(5, "Console", vagent::os::kSessionDisconnected);
    host.server.AddSession(4, "VXP#4", vagent::os::kSessionActive);
    vagent::SessionTable table;
    const std::map<int, _VXSessionA> records = {
        {3, Record(3, "a")}, {4, Record(4, "b")}, {5, Record(5, "c")}};
    table.Set(&records, nullptr);
    std::vector<_VXSessionA> sessions;
    EXPECT_EQ(vagent::GetSessionInfo(table, sessions), 1);
    EXPECT_THAT(IdsOf(sessions), ElementsAre(5, 4));
}

TEST(SessionInfo, SkipsSessionsInOtherStates) {
    FakeSessionHost host;
    host.server.AddSession(1, "VXP#1", vagent::os::kSessionIdle);
    host.server.AddSession(2, "VXP#2", vagent::os::kSessionConnected);
    host.server.AddSession(3, "VXP#3", vagent::os::kSessionListen);
    vagent::SessionTable table;
    const std::map<int, _VXSessionA> records = {
        {1, Record(1, "a")}, {2, Record(2, "b")}, {3, Record(3, "c")}};
    table.Set(&records, nullptr);
    std::vector<_VXSessionA> sessions;
    EXPECT_EQ(vagent::GetSessionInfo(table, sessions), 1);
    EXPECT_THAT(sessions, IsEmpty());
}

TEST(SessionInfo, SessionMissingFromTheTableIsNeverListed) {
    FakeSessionHost host;
    host.server.AddSession(7, "VXP#7", vagent::os::kSessionActive);
    host.server.AddSession(8, "VXP#8", vagent::os::kSessionActive);
    vagent::SessionTable table;
    const std::map<int, _VXSessionA> records = {{8, Record(8, "b")}};
    table.Set(&records, nullptr);
    std::vector<_VXSessionA> sessions;
    EXPECT_EQ(vagent::GetSessionInfo(table, sessions), 1);
    EXPECT_THAT(IdsOf(sessions), ElementsAre(8));
}

TEST(SessionInfo, KeepsTheTablesAddressAfterAskingForTheClientAddress) {
    FakeSessionHost host;
    host.server.AddSession(2, "VXP#2", vagent::os::kSessionActive);
    host.server.clientAddresses[2] = {2, 0, 192, 168, 1, 9};
    vagent::SessionTable table;
    const std::map<int, _VXSessionA> records = {{2, Record(2, "00-1A")}};
    table.Set(&records, nullptr);
    std::vector<_VXSessionA> sessions;
    ASSERT_EQ(vagent::GetSessionInfo(table, sessions), 1);
    ASSERT_EQ(sessions.size(), 1u);
    EXPECT_EQ(sessions[0].clientAddress, "10.0.0.2");
    EXPECT_EQ(sessions[0].info1, "info1-2");
    EXPECT_EQ(sessions[0].macAddress, "00-1A");
    EXPECT_EQ(sessions[0].info3, "info3-2");
    ASSERT_EQ(host.server.queries.size(), 1u);
    EXPECT_EQ(host.server.queries[0].sessionId, 2u);
    EXPECT_EQ(host.server.queries[0].infoClass, 14u);
}

TEST(SessionInfo, FailedEnumerationIsLoggedWithTheSystemsTextAndListsNothing) {
    LogCapture capture;
    FakeSessionHost host;
    host.server.enumerateStatus = vagent::os::kAccessDenied;
    host.messages.texts[vagent::os::kAccessDenied] = "Access is denied.";
    std::vector<_VXSessionA> sessions = {Record(1, "x")};
    EXPECT_EQ(vagent::GetSessionInfo(sessions), 0);
    EXPECT_THAT(sessions, IsEmpty());
    EXPECT_THAT(capture.Texts(),
                ElementsAre("GetSessionInfo : WTSEnumerateSessions failed ---- Access is denied."));
}

TEST(SessionInfo, WithoutASystemTextTheLogKeepsThePreviousText) {
    LogCapture capture;
    FakeSessionHost host;
    host.server.enumerateStatus = 1722;
    host.messages.texts[1722] = "The RPC server is unavailable.";
    std::vector<_VXSessionA> sessions;
    vagent::GetSessionInfo(sessions);
    host.server.enumerateStatus = 99999;
    vagent::GetSessionInfo(sessions);
    EXPECT_THAT(
        capture.Texts(),
        ElementsAre(
            "GetSessionInfo : WTSEnumerateSessions failed ---- The RPC server is unavailable.",
            "GetSessionInfo : WTSEnumerateSessions failed ---- The RPC server is unavailable."));
}

TEST(BroadcastMessage, MessagesSystemSessionsFromTheLastToTheFirstWithoutWaiting) {
    FakeSessionHost host;
    host.server.AddSession(1, "VXP#1", vagent::os::kSessionActive);
    host.server.AddSession(2, "Console", vagent::os::kSessionActive);
    host.server.AddSession(3, "vxp#3", vagent::os::kSessionDisconnected);
    EXPECT_EQ(vagent::BroadcastMessage("Notice", "Server restarts at noon"), 2);
    ASSERT_EQ(host.server.messages.size(), 2u);
    EXPECT_EQ(host.server.messages[0].sessionId, 3u);
    EXPECT_EQ(host.server.messages[1].sessionId, 1u);
    for (const auto& message : host.server.messages) {
        EXPECT_EQ(message.title, "Notice");
        EXPECT_EQ(message.message, "Server restarts at noon");
        EXPECT_EQ(message.style, 0u);
        EXPECT_EQ(message.timeoutSeconds, 0u);
        EXPECT_FALSE(message.wait);
    }
}

TEST(BroadcastMessage, CountsSessionsEvenWhenTheSendFails) {
    FakeSessionHost host;
    host.server.AddSession(1, "VXP#1", vagent::os::kSessionActive);
    host.server.messageStatus = vagent::os::kAccessDenied;
    EXPECT_EQ(vagent::BroadcastMessage("t", "m"), 1);
}

TEST(BroadcastMessage, FailedEnumerationGivesMinusOne) {
    FakeSessionHost host;
    host.server.enumerateStatus = vagent::os::kAccessDenied;
    EXPECT_EQ(vagent::BroadcastMessage("t", "m"), -1);
    EXPECT_THAT(host.server.messages, IsEmpty());
}

TEST(SessionLogoff, NonZeroFlagLogsOffWithoutWaiting) {
    FakeSessionHost host;
    host.server.AddSession(4, "VXP#4", vagent::os::kSessionActive);
    EXPECT_EQ(vagent::SessionLogoff(4, 2), 1);
    ASSERT_EQ(host.server.logoffs.size(), 1u);
    EXPECT_EQ(host.server.logoffs[0].sessionId, 4u);
    EXPECT_FALSE(host.server.logoffs[0].wait);
    EXPECT_THAT(host.server.disconnects, IsEmpty());
}

TEST(SessionLogoff, ZeroFlagDisconnectsWithoutWaiting) {
    FakeSessionHost host;
    host.server.AddSession(4, "VXP#4", vagent::os::kSessionActive);
    EXPECT_EQ(vagent::SessionLogoff(4, 0), 1);
    ASSERT_EQ(host.server.disconnects.size(), 1u);
    EXPECT_EQ(host.server.disconnects[0].sessionId, 4u);
    EXPECT_FALSE(host.server.disconnects[0].wait);
    EXPECT_THAT(host.server.logoffs, IsEmpty());
}

TEST(SessionLogoff, FailureOfTheServerGivesZero) {
    FakeSessionHost host;
    EXPECT_EQ(vagent::SessionLogoff(9, 1), 0);
    EXPECT_EQ(vagent::SessionLogoff(9, 0), 0);
}
