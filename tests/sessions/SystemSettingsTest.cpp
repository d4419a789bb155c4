#include "sessions/SystemSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/LogCapture.h"
#include "sessions/TaskHarness.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::GetSysSetting;
using vagent::SetSysSetting;
using vagent::test::FakeSessionHost;
using vagent::test::LogCapture;
using vagent::test::WriteWholeFile;

namespace {

constexpr char kTerminalServerKey[] = "SYSTEM\\CurrentControlSet\\Control\\Terminal Server";
constexpr char kWinStationKey[] =
    "SYSTEM\\CurrentControlSet\\Control\\Terminal Server\\WinStations\\VXP";

struct RegistrySetting {
    long type;
    const char* key;
    const char* name;
};

const RegistrySetting kRegistrySettings[] = {
    {0, kTerminalServerKey, "fSingleSessionPerUser"}, {1, kWinStationKey, "PortNumber"},
    {2, kWinStationKey, "MinEncryptionLevel"},        {3, kWinStationKey, "MaxConnectionTime"},
    {4, kWinStationKey, "MaxDisconnectionTime"},      {5, kWinStationKey, "MaxIdleTime"},
};

}  // namespace

TEST(SystemSettings, RegistryTypesReadTheirValuesAsStored) {
    FakeSessionHost host;
    for (const RegistrySetting& setting : kRegistrySettings) {
        host.registry.SetNumber(setting.key, setting.name, 1000u + setting.type);
    }
    for (const RegistrySetting& setting : kRegistrySettings) {
        std::int32_t value = -1;
        EXPECT_EQ(GetSysSetting(setting.type, &value), 1) << setting.type;
        EXPECT_EQ(value, 1000 + setting.type) << setting.type;
    }
}

TEST(SystemSettings, RegistryTypesWriteTheirValuesAsStored) {
    FakeSessionHost host;
    host.registry.AddKey(kWinStationKey);
    for (const RegistrySetting& setting : kRegistrySettings) {
        EXPECT_EQ(SetSysSetting(setting.type, 60000 + setting.type), 1) << setting.type;
        std::uint32_t stored = 0;
        ASSERT_TRUE(host.registry.Number(setting.key, setting.name, stored)) << setting.type;
        EXPECT_EQ(stored, 60000u + setting.type);
    }
}

TEST(SystemSettings, ReadOpensWithReadAccessAndClosesTheKeyAndTheRoot) {
    FakeSessionHost host;
    host.registry.SetNumber(kWinStationKey, "PortNumber", 3389);
    std::int32_t value = 0;
    ASSERT_EQ(GetSysSetting(1, &value), 1);
    ASSERT_EQ(host.registry.opens.size(), 1u);
    EXPECT_EQ(host.registry.opens[0].path, kWinStationKey);
    EXPECT_EQ(host.registry.opens[0].access, 0x20019u);
    EXPECT_EQ(host.registry.OpenKeys(), 0u);
    EXPECT_EQ(host.registry.rootCloses, 1);
}

TEST(SystemSettings, WriteOpensWithReadAndWriteAccessAndClosesTheKeyAndTheRoot) {
    FakeSessionHost host;
    host.registry.AddKey(kWinStationKey);
    ASSERT_EQ(SetSysSetting(2, 3), 1);
    ASSERT_EQ(host.registry.opens.size(), 1u);
    EXPECT_EQ(host.registry.opens[0].access, 0x20019u | 0x20006u);
    EXPECT_EQ(host.registry.OpenKeys(), 0u);
    EXPECT_EQ(host.registry.rootCloses, 1);
}

TEST(SystemSettings, MissingValueGivesZeroAndClosesEverything) {
    FakeSessionHost host;
    host.registry.AddKey(kWinStationKey);
    std::int32_t value = 17;
    EXPECT_EQ(GetSysSetting(3, &value), 0);
    EXPECT_EQ(value, 17);
    EXPECT_EQ(host.registry.OpenKeys(), 0u);
    EXPECT_EQ(host.registry.rootCloses, 1);
}

TEST(SystemSettings, MissingKeyGivesZeroAndTheRootIsStillClosed) {
    FakeSessionHost host;
    std::int32_t value = 17;
    EXPECT_EQ(GetSysSetting(0, &value), 0);
    EXPECT_EQ(value, 17);
    EXPECT_EQ(host.registry.rootCloses, 1);
}

TEST(SystemSettings, TypesAboveEightAndNegativeTypesGiveZeroAndLeaveTheValue) {
    FakeSessionHost host;
    std::int32_t value = 55;
    EXPECT_EQ(GetSysSetting(9, &value), 0);
    EXPECT_EQ(GetSysSetting(-1, &value), 0);
    EXPECT_EQ(value, 55);
    EXPECT_THAT(host.registry.opens, IsEmpty());
}

TEST(SystemSettings, SetWithAnUnknownTypeIsLoggedAndGivesZero) {
    LogCapture capture;
    FakeSessionHost host;
    EXPECT_EQ(SetSysSetting(9, 4), 0);
    EXPECT_EQ(SetSysSetting(-1, -2), 0);
    EXPECT_THAT(capture.Texts(),
                ElementsAre("SetSysSetting type=9, value=4", "SetSysSetting type=-1, value=-2"));
}

TEST(SystemSettings, SetSeven1StoresZeroInDenyConnectionsAndGetSevenThenGivesOne) {
    FakeSessionHost host;
    host.registry.SetNumber(kTerminalServerKey, "fDenyTSConnections", 1);
    EXPECT_EQ(SetSysSetting(7, 1), 1);
    std::uint32_t stored = 99;
    ASSERT_TRUE(host.registry.Number(kTerminalServerKey, "fDenyTSConnections", stored));
    EXPECT_EQ(stored, 0u);
    std::int32_t value = -1;
    EXPECT_EQ(GetSysSetting(7, &value), 1);
    EXPECT_EQ(value, 1);
}

TEST(SystemSettings, SetSevenZeroDeniesConnections) {
    FakeSessionHost host;
    host.registry.AddKey(kTerminalServerKey);
    EXPECT_EQ(SetSysSetting(7, 0), 1);
    std::uint32_t stored = 99;
    ASSERT_TRUE(host.registry.Number(kTerminalServerKey, "fDenyTSConnections", stored));
    EXPECT_EQ(stored, 1u);
    std::int32_t value = -1;
    EXPECT_EQ(GetSysSetting(7, &value), 1);
    EXPECT_EQ(value, 0);
}

TEST(SystemSettings, TypeSevenNegatesTheValueEvenWhenTheReadFails) {
    FakeSessionHost host;
    std::int32_t value = 0;
    EXPECT_EQ(GetSysSetting(7, &value), 0);
    EXPECT_EQ(value, 1);
    value = 5;
    EXPECT_EQ(GetSysSetting(7, &value), 0);
    EXPECT_EQ(value, 0);
}

TEST(SystemSettings, WithoutConfigFileTypeEightGivesOneAndTypeSixGivesZero) {
    FakeSessionHost host;
    std::int32_t value = -1;
    EXPECT_EQ(GetSysSetting(8, &value), 1);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(GetSysSetting(6, &value), 1);
    EXPECT_EQ(value, 0);
}

TEST(SystemSettings, FileTypesReadTheLibrarysConfigFile) {
    FakeSessionHost host;
    WriteWholeFile(host.LibraryConfigFile(),
                   "[Base]\r\nReconnEnabled=3\r\n[PrintManage]\r\nVpEnabled=0\r\n");
    WriteWholeFile(host.ExecutableConfigFile(),
                   "[Base]\r\nReconnEnabled=8\r\n[PrintManage]\r\nVpEnabled=9\r\n");
    std::int32_t value = -1;
    EXPECT_EQ(GetSysSetting(6, &value), 1);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(GetSysSetting(8, &value), 1);
    EXPECT_EQ(value, 0);
}

TEST(SystemSettings, SetSixFiveWritesTheTextFiveUnderReconnEnabled) {
    LogCapture capture;
    FakeSessionHost host;
    EXPECT_EQ(SetSysSetting(6, 5), 1);
    const std::string contents = host.LibraryConfig();
    EXPECT_NE(contents.find("[Base]"), std::string::npos) << contents;
    EXPECT_NE(contents.find("ReconnEnabled=5"), std::string::npos) << contents;
    EXPECT_FALSE(std::filesystem::exists(host.ExecutableConfigFile()));
    std::int32_t value = 0;
    EXPECT_EQ(GetSysSetting(6, &value), 1);
    EXPECT_EQ(value, 5);
    EXPECT_THAT(capture.Texts(), ElementsAre("SetSysSetting type=6, value=5"));
}

TEST(SystemSettings, SetEightWritesVpEnabledInPrintManage) {
    FakeSessionHost host;
    EXPECT_EQ(SetSysSetting(8, 0), 1);
    const std::string contents = host.LibraryConfig();
    EXPECT_NE(contents.find("[PrintManage]"), std::string::npos) << contents;
    EXPECT_NE(contents.find("VpEnabled=0"), std::string::npos) << contents;
    std::int32_t value = -1;
    EXPECT_EQ(GetSysSetting(8, &value), 1);
    EXPECT_EQ(value, 0);
}

TEST(SystemSettings, SetSixGivesOneEvenIfTheFileCannotBeWritten) {
    FakeSessionHost host;
    host.host.libraryPath =
        vagent::test::ToLibraryPath(host.directory.Path() / "missing" / "vagent.dll");
    EXPECT_EQ(SetSysSetting(6, 5), 1);
    EXPECT_EQ(SetSysSetting(8, 5), 1);
    EXPECT_FALSE(std::filesystem::exists(host.directory.Path() / "missing"));
}

TEST(SystemSettings, FileTypesWithoutTheLibrarysPathUseTheDefaults) {
    FakeSessionHost host;
    host.host.moduleStatus = 2;
    std::int32_t value = -1;
    EXPECT_EQ(GetSysSetting(8, &value), 1);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(SetSysSetting(6, 5), 1);
}

TEST(SystemSettings, SetOneFailsWhenTheWinStationKeyIsMissingAndDoesNotCreateIt) {
    FakeSessionHost host;
    host.registry.AddKey(kTerminalServerKey);
    for (long value : {0L, 3389L, -1L}) {
        EXPECT_EQ(SetSysSetting(1, value), 0);
    }
    EXPECT_FALSE(host.registry.HasKey(kWinStationKey));
    EXPECT_EQ(host.registry.OpenKeys(), 0u);
}

TEST(SystemSettings, NullValuePointerGivesZero) {
    FakeSessionHost host;
    EXPECT_EQ(GetSysSetting(8, nullptr), 0);
}
