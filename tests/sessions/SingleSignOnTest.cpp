#include "sessions/SingleSignOn.h"

#include <gtest/gtest.h>

#include <string>

#include "sessions/TaskHarness.h"

using vagent::test::FakeSessionHost;

TEST(SingleSignOn, EnableSsoSevenWritesOne) {
    FakeSessionHost host;
    EXPECT_EQ(vagent::EnableSSO(7), 1);
    const std::string contents = host.ExecutableConfig();
    EXPECT_NE(contents.find("[Base]"), std::string::npos) << contents;
    EXPECT_NE(contents.find("SSOEnabled=1"), std::string::npos) << contents;
}

TEST(SingleSignOn, ZeroWritesZeroOverTheEarlierSwitch) {
    FakeSessionHost host;
    ASSERT_EQ(vagent::EnableSSO(1), 1);
    EXPECT_EQ(vagent::EnableSSO(0), 1);
    const std::string contents = host.ExecutableConfig();
    EXPECT_NE(contents.find("SSOEnabled=0"), std::string::npos) << contents;
    EXPECT_EQ(contents.find("SSOEnabled=1"), std::string::npos) << contents;
}

TEST(SingleSignOn, Z9SwitchHasItsOwnKeyBesideTheOther) {
    FakeSessionHost host;
    ASSERT_EQ(vagent::EnableSSO(1), 1);
    EXPECT_EQ(vagent::EnableZ9SSO(-3), 1);
    const std::string contents = host.ExecutableConfig();
    EXPECT_NE(contents.find("\nSSOEnabled=1"), std::string::npos) << contents;
    EXPECT_NE(contents.find("Z9SSOEnabled=1"), std::string::npos) << contents;
}

TEST(SingleSignOn, SwitchesGoBesideTheExecutableNotBesideTheLibrary) {
    FakeSessionHost host;
    ASSERT_EQ(vagent::EnableSSO(1), 1);
    EXPECT_FALSE(std::filesystem::exists(host.LibraryConfigFile()));
}

TEST(SingleSignOn, WithoutTheExecutablesPathNothingIsWritten) {
    FakeSessionHost host;
    host.host.moduleStatus = 122;
    EXPECT_EQ(vagent::EnableSSO(1), 0);
    EXPECT_EQ(vagent::EnableZ9SSO(1), 0);
    EXPECT_FALSE(std::filesystem::exists(host.ExecutableConfigFile()));
}

TEST(SingleSignOn, ExecutablePathThatDoesNotFitTheBufferIsAFailure) {
    FakeSessionHost host;
    host.host.executablePath = "C:\\" + std::string(1100, 'd') + "\\vagentd.exe";
    EXPECT_EQ(vagent::EnableSSO(1), 0);
}

TEST(SingleSignOn, UnwritableFileGivesZero) {
    FakeSessionHost host;
    host.host.executablePath =
        vagent::test::ToLibraryPath(host.directory.Path() / "missing" / "vagentd.exe");
    EXPECT_EQ(vagent::EnableSSO(1), 0);
}
