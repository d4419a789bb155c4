#include <gtest/gtest.h>

#include <cstdint>

#include "facade/VAgentWRoads.h"
#include "vagent/VAgentW.h"

using vagent::test::kLocalAccounts;
using vagent::test::Road;
using vagent::test::VAgentWRoads;

// The wide agent's system settings on both roads, against the in-memory
// registry of the terminal server.

namespace {

const char kWinStationKey[] =
    "SYSTEM\\CurrentControlSet\\Control\\Terminal Server\\WinStations\\VXP";
constexpr long kPortNumberSetting = 1;
constexpr long kNoSuchSetting = 9;

class VAgentWSessions : public VAgentWRoads {};

INSTANTIATE_TEST_SUITE_P(BothRoads, VAgentWSessions, ::testing::Values(Road::kLocal, Road::kRemote),
                         vagent::test::RoadName);

}  // namespace

TEST_P(VAgentWSessions, GetSysSettingReadsTheRegistryValue) {
    host_.registry.SetNumber(kWinStationKey, "PortNumber", 3389);
    VAgentW agent = WideAgent(kLocalAccounts);
    long value = -1;
    EXPECT_EQ(agent.GetSysSetting(kPortNumberSetting, &value), 1);
    EXPECT_EQ(value, 3389);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

// The service sends a value of 0 for a setting it could not read; on this
// machine the caller's value stays as it was.
TEST_P(VAgentWSessions, GetSysSettingOfAnUnknownSettingReturnsZero) {
    VAgentW agent = WideAgent(kLocalAccounts);
    long value = 42;
    EXPECT_EQ(agent.GetSysSetting(kNoSuchSetting, &value), 0);
    EXPECT_EQ(value, Remote() ? 0 : 42);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

TEST_P(VAgentWSessions, SetSysSettingWritesTheRegistryValue) {
    host_.registry.SetNumber(kWinStationKey, "PortNumber", 3389);
    VAgentW agent = WideAgent(kLocalAccounts);
    EXPECT_EQ(agent.SetSysSetting(kPortNumberSetting, 3390), 1);
    std::uint32_t stored = 0;
    ASSERT_TRUE(host_.registry.Number(kWinStationKey, "PortNumber", stored));
    EXPECT_EQ(stored, 3390u);
    long value = -1;
    EXPECT_EQ(agent.GetSysSetting(kPortNumberSetting, &value), 1);
    EXPECT_EQ(value, 3390);
}

// The key is never created: the write fails, and the service's one answer
// "0" is the return value while the error code stays 0.
TEST_P(VAgentWSessions, SetSysSettingFailsWhenTheKeyIsMissing) {
    VAgentW agent = WideAgent(kLocalAccounts);
    agent.SetErrorCode(5);
    EXPECT_EQ(agent.SetSysSetting(kPortNumberSetting, 3390), 0);
    EXPECT_FALSE(host_.registry.HasKey(kWinStationKey));
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}
