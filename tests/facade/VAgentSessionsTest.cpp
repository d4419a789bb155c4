#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "facade/VAgentRoads.h"
#include "fakes/FakeHostFacts.h"
#include "helpers/TempDir.h"
#include "os/HostFacts.h"
#include "vagent/SessionTable.h"
#include "vagent/VAgent.h"

using ::testing::UnorderedElementsAre;
using vagent::test::kLocalAccounts;
using vagent::test::Road;
using vagent::test::VAgentRoads;

// Sessions, settings, single sign-on and printers on both roads, against
// the in-memory terminal server, registry and spooler.

namespace {

const char kWinStationKey[] =
    "SYSTEM\\CurrentControlSet\\Control\\Terminal Server\\WinStations\\VXP";
constexpr long kPortNumberSetting = 1;
constexpr long kNoSuchSetting = 9;

class VAgentSessions : public VAgentRoads {
protected:
    void TearDown() override {
        std::map<int, _VXSessionA> empty;
        SetSessionInfo(&empty, nullptr);
        VAgentRoads::TearDown();
    }

    void AddThreeSessions() {
        host_.sessions.AddSession(1, "VXP#1", vagent::os::kSessionActive);
        host_.sessions.AddSession(2, "VXP#2", vagent::os::kSessionActive);
        host_.sessions.AddSession(3, "Console", vagent::os::kSessionActive);
    }
};

INSTANTIATE_TEST_SUITE_P(BothRoads, VAgentSessions, ::testing::Values(Road::kLocal, Road::kRemote),
                         vagent::test::RoadName);

}  // namespace

TEST_P(VAgentSessions, GetSessionCountsCountsTheAgentsSessions) {
    AddThreeSessions();
    VAgent agent = Agent(kLocalAccounts);
    EXPECT_EQ(agent.GetSessionCounts(), 2);
    EXPECT_EQ(host_.sessions.enumerations.size(), 1u);
}

TEST_P(VAgentSessions, GetSessionCountsAllCountsEverySession) {
    AddThreeSessions();
    VAgent agent = Agent(kLocalAccounts);
    EXPECT_EQ(agent.GetSessionCountsAll(), 3);
}

TEST_P(VAgentSessions, GetSessionCountsIsMinusOneWhenTheSessionsCannotBeListed) {
    host_.sessions.enumerateStatus = 5;
    VAgent agent = Agent(kLocalAccounts);
    EXPECT_EQ(agent.GetSessionCounts(), -1);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_P(VAgentSessions, GetSessionInfoListsTheTablesRecordsOfListableSessions) {
    host_.sessions.AddSession(2, "VXP#2", vagent::os::kSessionActive);
    host_.sessions.AddSession(5, "Console", vagent::os::kSessionDisconnected);
    host_.sessions.AddSession(6, "Console", vagent::os::kSessionActive);
    std::map<int, _VXSessionA> table;
    for (const int id : {2, 5, 6}) {
        table[id] = _VXSessionA{id, "info1-" + std::to_string(id), "00-1A-" + std::to_string(id),
                                "info3", "10.0.0." + std::to_string(id)};
    }
    SetSessionInfo(&table, nullptr);
    VAgent agent = Agent(kLocalAccounts);
    std::vector<_VXSessionA> sessions = {_VXSessionA{}};
    EXPECT_EQ(agent.GetSessionInfo(sessions), 1);
    // The local listing clears the caller's vector first; the reply's decoder
    // appends to it.
    const std::size_t kept = Remote() ? 1 : 0;
    ASSERT_EQ(sessions.size(), kept + 2);
    EXPECT_EQ(sessions[kept].sessionId, 2);
    EXPECT_EQ(sessions[kept].macAddress, "00-1A-2");
    EXPECT_EQ(sessions[kept].clientAddress, "10.0.0.2");
    EXPECT_EQ(sessions[kept + 1].sessionId, 5);
    EXPECT_EQ(sessions[kept + 1].info1, "info1-5");
}

// Remotely the service's two answers, the result and the value, become the
// return value and *value.
TEST_P(VAgentSessions, GetSysSettingReadsTheRegistryValue) {
    host_.registry.SetNumber(kWinStationKey, "PortNumber", 3389);
    VAgent agent = Agent(kLocalAccounts);
    long value = -1;
    EXPECT_EQ(agent.GetSysSetting(kPortNumberSetting, &value), 1);
    EXPECT_EQ(value, 3389);
}

// The service sends a value of 0 for a setting it could not read; on this
// machine the caller's value stays as it was.
TEST_P(VAgentSessions, GetSysSettingOfAnUnknownSettingReturnsZero) {
    VAgent agent = Agent(kLocalAccounts);
    long value = 42;
    EXPECT_EQ(agent.GetSysSetting(kNoSuchSetting, &value), 0);
    EXPECT_EQ(value, Remote() ? 0 : 42);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_P(VAgentSessions, SetSysSettingWritesTheRegistryValue) {
    host_.registry.SetNumber(kWinStationKey, "PortNumber", 3389);
    VAgent agent = Agent(kLocalAccounts);
    EXPECT_EQ(agent.SetSysSetting(kPortNumberSetting, 3390), 1);
    std::uint32_t stored = 0;
    ASSERT_TRUE(host_.registry.Number(kWinStationKey, "PortNumber", stored));
    EXPECT_EQ(stored, 3390u);
}

// The key is never created: the write fails, and the service's one answer
// "0" is the return value while the error code stays 0.
TEST_P(VAgentSessions, SetSysSettingFailsWhenTheKeyIsMissing) {
    VAgent agent = Agent(kLocalAccounts);
    EXPECT_EQ(agent.SetSysSetting(kPortNumberSetting, 3390), 0);
    EXPECT_FALSE(host_.registry.HasKey(kWinStationKey));
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_P(VAgentSessions, SessionLogoffLogsOffWithAFlagAndDisconnectsWithout) {
    AddThreeSessions();
    VAgent agent = Agent(kLocalAccounts);
    EXPECT_EQ(agent.SessionLogoff(2, 1), 1);
    EXPECT_EQ(agent.SessionLogoff(1, 0), 1);
    ASSERT_EQ(host_.sessions.logoffs.size(), 1u);
    EXPECT_EQ(host_.sessions.logoffs[0].sessionId, 2u);
    ASSERT_EQ(host_.sessions.disconnects.size(), 1u);
    EXPECT_EQ(host_.sessions.disconnects[0].sessionId, 1u);
}

TEST_P(VAgentSessions, SessionLogoffFailsWhenTheServerRefuses) {
    AddThreeSessions();
    host_.sessions.sessionCallStatus = 5;
    VAgent agent = Agent(kLocalAccounts);
    EXPECT_EQ(agent.SessionLogoff(2, 1), 0);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_P(VAgentSessions, BroadcastMessageReachesEveryAgentSession) {
    AddThreeSessions();
    VAgent agent = Agent(kLocalAccounts);
    std::string title = "Notice", message = "Going down";
    const int answer = agent.BroadcastMessage(title, message);
    EXPECT_EQ(answer, Remote() ? 1 : 2);
    std::vector<std::uint32_t> reached;
    for (const auto& sent : host_.sessions.messages) {
        reached.push_back(sent.sessionId);
        EXPECT_EQ(sent.title, "Notice");
        EXPECT_EQ(sent.message, "Going down");
    }
    EXPECT_THAT(reached, UnorderedElementsAre(1u, 2u));
}

TEST_P(VAgentSessions, GetPrinterInfoListsPrintersWithTheirSessionNumbers) {
    const std::string sessionPrinter = "\xBB\xE1\xBB\xB0 3 HP";
    host_.spooler.printers = {"Office", sessionPrinter};
    VAgent agent = Agent(kLocalAccounts);
    std::vector<_VXPrinterA> printers;
    EXPECT_EQ(agent.GetPrinterInfo(printers), 1);
    ASSERT_EQ(printers.size(), 2u);
    EXPECT_EQ(printers[0].sessionId, 0);
    EXPECT_EQ(printers[0].printerName, "Office");
    EXPECT_EQ(printers[1].sessionId, 3);
    EXPECT_EQ(printers[1].printerName, sessionPrinter);
}

class VAgentSingleSignOn : public VAgentSessions {
protected:
    void SetUp() override {
        VAgentSessions::SetUp();
        facts_.executablePath = directory_.LibraryPath() + "vagentd.exe";
    }

    std::string Config() { return vagent::test::ReadTextFile(directory_ / "Config.ini"); }

    vagent::test::TempDir directory_;
    vagent::test::FakeHostFacts facts_;
    vagent::os::ScopedFacility<vagent::os::HostFacts> factsScope_{facts_};
};

INSTANTIATE_TEST_SUITE_P(BothRoads, VAgentSingleSignOn,
                         ::testing::Values(Road::kLocal, Road::kRemote), vagent::test::RoadName);

TEST_P(VAgentSingleSignOn, EnableSSOWritesTheSwitchBesideTheExecutable) {
    VAgent agent = Agent(kLocalAccounts);
    EXPECT_EQ(agent.EnableSSO(7), 1);
    EXPECT_EQ(Config(), "[Base]\nSSOEnabled=1\n");
}

TEST_P(VAgentSingleSignOn, EnableZ9SSOWritesItsOwnSwitch) {
    VAgent agent = Agent(kLocalAccounts);
    EXPECT_EQ(agent.EnableZ9SSO(0), 1);
    EXPECT_EQ(Config(), "[Base]\nZ9SSOEnabled=0\n");
}

// Without the executable's path nothing is written: the service
// acknowledges 0 and the call fails with the error code left at 0.
TEST_P(VAgentSingleSignOn, EnableSSOFailsWhenTheExecutablesPathIsUnknown) {
    facts_.moduleStatus = 5;
    VAgent agent = Agent(kLocalAccounts);
    EXPECT_EQ(agent.EnableSSO(1), 0);
    EXPECT_FALSE(std::filesystem::exists(directory_ / "Config.ini"));
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}
