#include "CommandLine.h"

#include <gtest/gtest.h>

namespace vagent::service {
namespace {

Command Parse(const std::vector<std::string>& arguments) {
    return ParseCommandLine(arguments);
}

void ExpectUsageError(const std::vector<std::string>& arguments) {
    const Command command = Parse(arguments);
    std::string joined;
    for (const std::string& argument : arguments) {
        joined += argument + " ";
    }
    EXPECT_EQ(command.action, Action::UsageError) << joined;
    EXPECT_NE(command.text.find("vagentd: "), std::string::npos) << joined;
}

TEST(CommandLine, RunTakesTheDefaults) {
    const Command command = Parse({"run"});
    ASSERT_EQ(command.action, Action::Run) << command.text;
    EXPECT_EQ(command.options.listenAddress, "0.0.0.0");
    EXPECT_EQ(command.options.listenPort, 1234);
    EXPECT_EQ(command.options.allow, std::vector<std::string>{"127.0.0.0/8"});
    EXPECT_EQ(command.options.workers, 16u);
    EXPECT_EQ(command.options.maxConnections, 512u);
    EXPECT_EQ(command.options.maxBlock, 64u << 20);
    EXPECT_EQ(command.options.maxHeldBytes, 256u << 20);
    EXPECT_TRUE(command.serverArguments.empty());
}

TEST(CommandLine, ListenTakesAddressAndPort) {
    const Command command = Parse({"run", "--listen", "127.0.0.1:0"});
    ASSERT_EQ(command.action, Action::Run) << command.text;
    EXPECT_EQ(command.options.listenAddress, "127.0.0.1");
    EXPECT_EQ(command.options.listenPort, 0);
}

TEST(CommandLine, AllowRepeatsAndReplacesTheDefault) {
    const Command command = Parse({"run", "--allow", "10.0.0.0/8", "--allow", "192.168.1.5/32"});
    ASSERT_EQ(command.action, Action::Run) << command.text;
    EXPECT_EQ(command.options.allow, (std::vector<std::string>{"10.0.0.0/8", "192.168.1.5/32"}));
}

TEST(CommandLine, TakesEachLimit) {
    const Command command = Parse({"run", "--workers", "3", "--max-connections", "2000",
                                   "--max-block", "1048576", "--max-held-bytes", "8589934592"});
    ASSERT_EQ(command.action, Action::Run) << command.text;
    EXPECT_EQ(command.options.workers, 3u);
    EXPECT_EQ(command.options.maxConnections, 2000u);
    EXPECT_EQ(command.options.maxBlock, 1048576u);
    EXPECT_EQ(command.options.maxHeldBytes, 8589934592u);
}

TEST(CommandLine, InstallKeepsItsOptionsForTheRegisteredCommand) {
    const Command command = Parse({"install", "--listen", "0.0.0.0:4000", "--workers", "4"});
    ASSERT_EQ(command.action, Action::Install) << command.text;
    EXPECT_EQ(command.options.listenPort, 4000);
    EXPECT_EQ(command.serverArguments,
              (std::vector<std::string>{"--listen", "0.0.0.0:4000", "--workers", "4"}));
}

TEST(CommandLine, ServiceAndUninstallAreCommands) {
    EXPECT_EQ(Parse({"service", "--workers", "2"}).action, Action::Service);
    EXPECT_EQ(Parse({"service", "--workers", "2"}).options.workers, 2u);
    EXPECT_EQ(Parse({"uninstall"}).action, Action::Uninstall);
}

TEST(CommandLine, HelpAndVersionSucceedWithText) {
    const Command help = Parse({"--help"});
    EXPECT_EQ(help.action, Action::Help);
    EXPECT_NE(help.text.find("run"), std::string::npos);
    EXPECT_NE(help.text.find("install"), std::string::npos);

    const Command runHelp = Parse({"run", "--help"});
    EXPECT_EQ(runHelp.action, Action::Help);
    EXPECT_NE(runHelp.text.find("--max-connections"), std::string::npos);

    const Command version = Parse({"--version"});
    EXPECT_EQ(version.action, Action::Version);
    EXPECT_EQ(version.text.rfind("vagentd ", 0), 0u);
}

TEST(CommandLine, BadListenValuesAreUsageErrors) {
    for (const char* listen : {"127.0.0.1", "127.0.0.1:", "127.0.0.1:65536", "127.0.0.1:x",
                               "host:80", ":80", "127.0.0.1:-1", "1.2.3:80"}) {
        ExpectUsageError({"run", "--listen", listen});
    }
}

TEST(CommandLine, BadAllowValuesAreUsageErrors) {
    ExpectUsageError({"run", "--allow", "127.0.0.0/33"});
    ExpectUsageError({"run", "--allow", "everyone"});
}

TEST(CommandLine, BadLimitsAreUsageErrors) {
    ExpectUsageError({"run", "--workers", "0"});
    ExpectUsageError({"run", "--workers", "many"});
    ExpectUsageError({"run", "--max-connections", "0"});
    ExpectUsageError({"run", "--max-connections", "-5"});
    ExpectUsageError({"run", "--max-block", "3"});
    ExpectUsageError({"run", "--max-block", "4294967296"});
    ExpectUsageError({"run", "--max-held-bytes", "4095"});
    ExpectUsageError({"run", "--max-held-bytes", "-1"});
}

TEST(CommandLine, MissingOrUnknownCommandsAreUsageErrors) {
    ExpectUsageError({});
    ExpectUsageError({"serve"});
    ExpectUsageError({"run", "--port", "80"});
    ExpectUsageError({"run", "--workers"});
    ExpectUsageError({"run", "extra"});
}

}  // namespace
}  // namespace vagent::service
