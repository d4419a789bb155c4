#include "sessions/SystemSettings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "helpers/RegistrySnapshot.h"
#include "helpers/TempDir.h"
#include "os/Facilities.h"
#include "os/HostFacts.h"
#include "os/Registry.h"
#include "os/Status.h"
#include "sessions/SingleSignOn.h"

using vagent::GetSysSetting;
using vagent::SetSysSetting;
using vagent::os::Installed;
using vagent::os::kLocalMachine;
using vagent::os::Registry;
using vagent::os::RegistryKey;
using vagent::test::RegistrySnapshot;

// The settings against the real registry and the real profile files of this
// host. The suites link the library statically, so the library's
// "Config.ini" and the executable's are the same file here.

namespace {

constexpr char kTerminalServerKey[] = "SYSTEM\\CurrentControlSet\\Control\\Terminal Server";
constexpr char kWinStationsKey[] =
    "SYSTEM\\CurrentControlSet\\Control\\Terminal Server\\WinStations";
constexpr char kWinStationKey[] =
    "SYSTEM\\CurrentControlSet\\Control\\Terminal Server\\WinStations\\VXP";

Registry& TheRegistry() {
    return Installed<Registry>();
}

bool KeyExists(const char* path) {
    RegistryKey key = 0;
    if (TheRegistry().OpenKey(kLocalMachine, path, 0x20019, key) != 0) {
        return false;
    }
    TheRegistry().CloseKey(key);
    return true;
}

bool CreateKey(const char* path) {
    RegistryKey key = 0;
    if (TheRegistry().CreateKey(kLocalMachine, path, key) != 0) {
        return false;
    }
    TheRegistry().CloseKey(key);
    return true;
}

std::filesystem::path ExecutableConfigFile() {
    std::string executable;
    EXPECT_EQ(Installed<vagent::os::HostFacts>().ModuleFileName(vagent::os::Module::Executable,
                                                                executable),
              0u);
    std::string file = executable.substr(0, executable.rfind('\\') + 1) + "Config.ini";
    // Forward slashes serve both Windows and POSIX hosts.
    std::replace(file.begin(), file.end(), '\\', '/');
    return std::filesystem::path(file);
}

bool HasRegistry() {
    RegistryKey probe = 0;
    if (TheRegistry().OpenKey(kLocalMachine, "SYSTEM", 0x20019, probe) ==
        vagent::os::kNotSupported) {
        return false;
    }
    TheRegistry().CloseKey(probe);
    return true;
}

// Every key and value the settings touch, saved before a test and put back
// after it: the suite leaves a real terminal server as it found it.
std::unique_ptr<RegistrySnapshot> SnapshotOfTheSettings() {
    return std::make_unique<RegistrySnapshot>(
        std::vector<std::string>{kTerminalServerKey, kWinStationsKey, kWinStationKey},
        std::vector<RegistrySnapshot::ValueName>{{kTerminalServerKey, "fSingleSessionPerUser"},
                                                 {kTerminalServerKey, "fDenyTSConnections"},
                                                 {kWinStationKey, "PortNumber"},
                                                 {kWinStationKey, "MinEncryptionLevel"},
                                                 {kWinStationKey, "MaxConnectionTime"},
                                                 {kWinStationKey, "MaxDisconnectionTime"},
                                                 {kWinStationKey, "MaxIdleTime"}});
}

// Creates the terminal-server keys that the host lacks and puts back every
// key and value the test touched when it ends.
class TerminalServerKeys : public ::testing::Test {
protected:
    void SetUp() override {
        if (!HasRegistry()) {
            GTEST_SKIP() << "no registry on this host";
        }
        snapshot_ = SnapshotOfTheSettings();
        if (!snapshot_->Complete()) {
            GTEST_SKIP() << "a terminal-server value of this host cannot be saved";
        }
        ASSERT_TRUE(CreateKey(kWinStationsKey));
    }

    void TearDown() override { snapshot_.reset(); }

    // A test that needs the "VXP" key missing cannot run where the host has
    // one of its own.
    bool HostHasItsOwnWinStation() const { return snapshot_->Existed(kWinStationKey); }

private:
    std::unique_ptr<RegistrySnapshot> snapshot_;
};

// Moves a "Config.ini" beside the test program out of the way for the test
// and puts it back afterwards, as it was; one the test made is removed.
class ConfigBesideTheProgram : public ::testing::Test {
protected:
    void SetUp() override {
        hadFile_ = std::filesystem::exists(file_);
        if (hadFile_) {
            saved_ = vagent::test::ReadWholeFile(file_);
        }
        std::filesystem::remove(file_);
    }
    void TearDown() override {
        std::filesystem::remove(file_);
        if (hadFile_) {
            vagent::test::WriteWholeFile(file_, saved_);
        }
    }

    std::string Contents() const { return vagent::test::ReadWholeFile(file_); }

private:
    std::filesystem::path file_ = ExecutableConfigFile();
    bool hadFile_ = false;
    std::string saved_;
};

}  // namespace

TEST_F(TerminalServerKeys, SetOneFailsWhenTheWinStationKeyIsMissingAndDoesNotCreateIt) {
    if (HostHasItsOwnWinStation()) {
        GTEST_SKIP() << "this host has a VXP window station";
    }
    EXPECT_EQ(SetSysSetting(1, 3389), 0);
    EXPECT_FALSE(KeyExists(kWinStationKey));
    std::int32_t value = 12;
    EXPECT_EQ(GetSysSetting(1, &value), 0);
    EXPECT_EQ(value, 12);
    EXPECT_FALSE(KeyExists(kWinStationKey));
}

TEST_F(TerminalServerKeys, RegistryTypesAreWrittenAndReadBack) {
    ASSERT_TRUE(CreateKey(kWinStationKey));
    const long values[] = {1, 3390, 3, 600000, 120000, 900000};
    for (long type = 0; type <= 5; ++type) {
        EXPECT_EQ(SetSysSetting(type, values[type]), 1) << type;
    }
    for (long type = 0; type <= 5; ++type) {
        std::int32_t value = -1;
        EXPECT_EQ(GetSysSetting(type, &value), 1) << type;
        EXPECT_EQ(value, values[type]) << type;
    }
}

TEST_F(TerminalServerKeys, TypeSevenIsStoredInvertedInDenyConnections) {
    EXPECT_EQ(SetSysSetting(7, 1), 1);
    RegistryKey key = 0;
    ASSERT_EQ(TheRegistry().OpenKey(kLocalMachine, kTerminalServerKey, 0x20019, key), 0u);
    std::uint32_t stored = 99;
    EXPECT_EQ(TheRegistry().QueryValue(key, "fDenyTSConnections", stored), 0u);
    TheRegistry().CloseKey(key);
    EXPECT_EQ(stored, 0u);
    std::int32_t value = -1;
    EXPECT_EQ(GetSysSetting(7, &value), 1);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(SetSysSetting(7, 0), 1);
    EXPECT_EQ(GetSysSetting(7, &value), 1);
    EXPECT_EQ(value, 0);
}

TEST(SystemSettingsWithoutRegistry, RegistryTypesFailWhereThereIsNoRegistry) {
    RegistryKey probe = 0;
    if (TheRegistry().OpenKey(kLocalMachine, "SYSTEM", 0x20019, probe) !=
        vagent::os::kNotSupported) {
        TheRegistry().CloseKey(probe);
        GTEST_SKIP() << "this host has a registry";
    }
    for (long type : {0L, 1L, 2L, 3L, 4L, 5L, 7L}) {
        std::int32_t value = 0;
        EXPECT_EQ(GetSysSetting(type, &value), 0) << type;
        EXPECT_EQ(SetSysSetting(type, 1), 0) << type;
    }
}

TEST_F(ConfigBesideTheProgram, FileTypesUseDefaultsThenWhatWasWritten) {
    std::int32_t value = -1;
    EXPECT_EQ(GetSysSetting(6, &value), 1);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(GetSysSetting(8, &value), 1);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(SetSysSetting(6, 5), 1);
    EXPECT_EQ(SetSysSetting(8, 0), 1);
    EXPECT_EQ(GetSysSetting(6, &value), 1);
    EXPECT_EQ(value, 5);
    EXPECT_EQ(GetSysSetting(8, &value), 1);
    EXPECT_EQ(value, 0);
    const std::string contents = Contents();
    EXPECT_NE(contents.find("ReconnEnabled=5"), std::string::npos) << contents;
    EXPECT_NE(contents.find("VpEnabled=0"), std::string::npos) << contents;
}

TEST_F(ConfigBesideTheProgram, SingleSignOnSwitchesAreWritten) {
    EXPECT_EQ(vagent::EnableSSO(7), 1);
    EXPECT_EQ(vagent::EnableZ9SSO(0), 1);
    const std::string contents = Contents();
    EXPECT_NE(contents.find("\nSSOEnabled=1"), std::string::npos) << contents;
    EXPECT_NE(contents.find("Z9SSOEnabled=0"), std::string::npos) << contents;
}

namespace {

// A terminal server that has its own window station and settings keeps them
// whole through the settings tests.
class SettingsOfARealServer : public TerminalServerKeys {
public:
    void TestBody() override {}
    using TerminalServerKeys::SetUp;
    using TerminalServerKeys::TearDown;
};

std::uint32_t NumberOf(const char* path, const char* name) {
    RegistryKey key = 0;
    std::uint32_t value = 0xFFFFFFFFu;
    if (TheRegistry().OpenKey(kLocalMachine, path, 0x20019, key) == 0) {
        TheRegistry().QueryValue(key, name, value);
        TheRegistry().CloseKey(key);
    }
    return value;
}

void SetNumber(const char* path, const char* name, std::uint32_t value) {
    RegistryKey key = 0;
    ASSERT_EQ(TheRegistry().CreateKey(kLocalMachine, path, key), 0u);
    EXPECT_EQ(TheRegistry().SetNumberValue(key, name, value), 0u);
    TheRegistry().CloseKey(key);
}

}  // namespace

TEST(SystemSettingsOnARealServer, TestsLeaveTheServersKeysAndValuesAsTheyWere) {
    if (!HasRegistry()) {
        GTEST_SKIP() << "no registry on this host";
    }
    const std::unique_ptr<RegistrySnapshot> outer = SnapshotOfTheSettings();
    SetNumber(kWinStationKey, "PortNumber", 3389);
    SetNumber(kTerminalServerKey, "fDenyTSConnections", 1);
    SetNumber(kTerminalServerKey, "fSingleSessionPerUser", 0);
    {
        SettingsOfARealServer test;
        test.SetUp();
        EXPECT_EQ(SetSysSetting(1, 3390), 1);
        EXPECT_EQ(SetSysSetting(7, 1), 1);
        EXPECT_EQ(SetSysSetting(0, 1), 1);
        EXPECT_EQ(SetSysSetting(2, 3), 1);
        test.TearDown();
    }
    EXPECT_TRUE(KeyExists(kWinStationKey));
    EXPECT_EQ(NumberOf(kWinStationKey, "PortNumber"), 3389u);
    EXPECT_EQ(NumberOf(kTerminalServerKey, "fDenyTSConnections"), 1u);
    EXPECT_EQ(NumberOf(kTerminalServerKey, "fSingleSessionPerUser"), 0u);
    EXPECT_EQ(NumberOf(kWinStationKey, "MinEncryptionLevel"), 0xFFFFFFFFu);
}
