#include "sessions/SystemSettings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

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

// Creates the terminal-server keys that the host lacks and deletes what it
// created when the test ends; a window-station key left by an earlier run is
// removed first, so that each test starts from a missing "VXP" key.
class TerminalServerKeys : public ::testing::Test {
protected:
    void SetUp() override {
        RegistryKey probe = 0;
        if (TheRegistry().OpenKey(kLocalMachine, "SYSTEM", 0x20019, probe) ==
            vagent::os::kNotSupported) {
            GTEST_SKIP() << "no registry on this host";
        }
        TheRegistry().CloseKey(probe);
        TheRegistry().DeleteKey(kLocalMachine, kWinStationKey);
        createdTerminalServer_ = !KeyExists(kTerminalServerKey);
        createdWinStations_ = !KeyExists(kWinStationsKey);
        ASSERT_TRUE(CreateKey(kWinStationsKey));
    }

    void TearDown() override {
        TheRegistry().DeleteKey(kLocalMachine, kWinStationKey);
        if (createdWinStations_) {
            TheRegistry().DeleteKey(kLocalMachine, kWinStationsKey);
        }
        if (createdTerminalServer_) {
            TheRegistry().DeleteKey(kLocalMachine, kTerminalServerKey);
        }
    }

private:
    bool createdTerminalServer_ = false;
    bool createdWinStations_ = false;
};

// Removes the "Config.ini" beside the test program before and after.
class ConfigBesideTheProgram : public ::testing::Test {
protected:
    void SetUp() override { std::filesystem::remove(file_); }
    void TearDown() override { std::filesystem::remove(file_); }

    std::string Contents() const { return vagent::test::ReadWholeFile(file_); }

private:
    std::filesystem::path file_ = ExecutableConfigFile();
};

}  // namespace

TEST_F(TerminalServerKeys, SetOneFailsWhenTheWinStationKeyIsMissingAndDoesNotCreateIt) {
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
