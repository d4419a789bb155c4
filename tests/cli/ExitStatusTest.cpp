#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "cli/CliHarness.h"
#include "helpers/TempDir.h"

using ::testing::HasSubstr;
using vagent::test::CliAgainstService;
using vagent::test::CliRun;
using vagent::test::RefusedPort;
using vagent::test::RunCli;
using Json = nlohmann::json;

// The exit status: 0 when every host succeeded, 1 when any failed, 2 for a
// command line that is not understood; help and version succeed.

TEST(CliExitStatus, UsageErrorsExitTwoWithAMessage) {
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {},
             {"user"},
             {"nosuch"},
             {"user", "show", "--bogus"},
             {"session", "logoff", "three"},
             {"setting", "get", "9"},
             {"-H", "127.0.0.1:99999", "host", "name"},
             {"-H", "127.0.0.1", "--parallel", "0", "host", "name"},
             {"--hosts", "/nonexistent/hosts", "host", "name"},
             {"user", "delete"}}) {
        const CliRun run = RunCli(arguments);
        EXPECT_EQ(run.status, 2) << ::testing::PrintToString(arguments);
        EXPECT_FALSE(run.err.empty());
        EXPECT_EQ(run.out, "");
    }
}

TEST(CliExitStatus, HelpOnEveryCommandAndVersionExitZero) {
    const CliRun version = RunCli({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, "vagentctl 0.1.0\n");
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"--help"},
                                               {"user", "--help"},
                                               {"user", "add", "--help"},
                                               {"copy", "--help"},
                                               {"session", "count", "--help"}}) {
        const CliRun run = RunCli(arguments);
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(run.out, HasSubstr("Usage:"));
    }
}

TEST(CliExitStatus, AnUnreachableHostExitsOneWithTheSocketError) {
    const std::string host = "127.0.0.1:" + RefusedPort();
    const CliRun run = RunCli({"-H", host, "--json", "session", "count"});
    EXPECT_EQ(run.status, 1);
    ASSERT_EQ(run.JsonLines().size(), 1u);
    const Json line = run.JsonLines()[0];
    EXPECT_EQ(line["host"], host);
    EXPECT_EQ(line["ok"], false);
    EXPECT_EQ(line["error"]["code"], 10061);
    EXPECT_FALSE(line["error"]["text"].get<std::string>().empty());
}

TEST(CliExitStatus, SuccessAndAFailedTaskAgainstOneService) {
    CliAgainstService service;
    EXPECT_EQ(service.Remote({"session", "count"}).status, 0);
    EXPECT_EQ(service.Remote({"setting", "get", "2"}).status, 1);
}

TEST(CliExitStatus, WithoutAHostTheCommandRunsInThisProcess) {
    vagent::test::EndToEndHost host;
    host.names.names[vagent::os::kComputerNameDnsHostname] = "this-machine";
    const CliRun run = RunCli({"--json", "host", "name"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "{\"host\":\"local\",\"ok\":true,\"result\":\"this-machine\"}\n");
}

namespace {

// The text a program wrote, with Windows line ends read as plain ones.
std::string ReadAll(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(in), (std::istreambuf_iterator<char>()));
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return text;
}

// The program as the system's shell names it: a Windows shell under Wine
// reaches the build tree through drive Z:. The build tree's and temporary
// paths hold no blanks, so nothing is quoted (a Windows shell strips quotes
// in its own way).
std::string Program() {
    std::string path = VAGENTCTL_EXECUTABLE;
    if (std::filesystem::path::preferred_separator == '\\' && path.front() == '/') {
        std::replace(path.begin(), path.end(), '/', '\\');
        path = "Z:" + path;
    }
    return path;
}

// std::system gives the shell's wait status where there is one (the code
// shifted up a byte) and the code itself elsewhere.
int ExitCodeOf(int systemResult) {
    return systemResult > 255 ? systemResult >> 8 : systemResult;
}

}  // namespace

// The program itself, once, as a child process: it reads its password lines
// from a redirected standard input, not from its arguments.
TEST(CliProgram, RunsAsAProcessAgainstAService) {
    CliAgainstService service;
    vagent::test::TempDir directory;
    const auto input = directory / "users.txt";
    const auto output = directory / "out.txt";
    std::ofstream(input) << "ann:Secret1\n";
    const std::string command = Program() + " -H " + service.HostArgument() +
                                " --json user add < " + input.string() + " > " + output.string();
    EXPECT_EQ(ExitCodeOf(std::system(command.c_str())), 0);
    EXPECT_EQ(ReadAll(output), "{\"host\":\"" + service.HostArgument() +
                                   "\",\"ok\":true,\"result\":{\"added\":[\"ann\"]}}\n");
    EXPECT_EQ(service.host.accounts.users[L"ann"].password, L"Secret1");
    const std::string usage = Program() + " nosuch 2> " + output.string();
    EXPECT_EQ(ExitCodeOf(std::system(usage.c_str())), 2);
}
