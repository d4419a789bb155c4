#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "cli/CliHarness.h"
#include "helpers/TempDir.h"

using ::testing::HasSubstr;
using ::testing::UnorderedElementsAre;
using vagent::test::CliRun;
using vagent::test::EndToEndHost;
using vagent::test::EndToEndService;
using vagent::test::RefusedPort;
using vagent::test::RunCli;
using Json = nlohmann::json;

// One command over several services: each host's outcome on its own line,
// a host that is down costing only its own line.

namespace {

std::string At(const EndToEndService& service) {
    return "127.0.0.1:" + std::to_string(service.Port());
}

std::vector<std::string> Hosts(const std::vector<Json>& lines) {
    std::vector<std::string> hosts;
    for (const Json& line : lines) {
        hosts.push_back(line["host"]);
    }
    return hosts;
}

}  // namespace

// The down host refuses its connection at once, so a run that waited for
// it in turn would still finish; the structure is what is checked: one
// error line for it, and results for the others, whatever order they
// finished in.
TEST(CliFanOut, ThreeHostsOneDownGiveTwoResultsAndOneError) {
    EndToEndHost host;
    host.names.names[vagent::os::kComputerNameDnsHostname] = "ts";
    EndToEndService first;
    EndToEndService second;
    const std::string down = "127.0.0.1:" + RefusedPort();
    const CliRun run =
        RunCli({"-H", At(first) + "," + down, "--host", At(second), "--json", "host", "name"});
    EXPECT_EQ(run.status, 1);
    const std::vector<Json> lines = run.JsonLines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_THAT(Hosts(lines), UnorderedElementsAre(At(first), At(second), down));
    for (const Json& line : lines) {
        if (line["host"] == down) {
            EXPECT_EQ(line["ok"], false);
            EXPECT_NE(line["error"]["code"], 0);
            EXPECT_FALSE(line["error"]["text"].get<std::string>().empty());
        } else {
            EXPECT_EQ(line["result"], "ts");
        }
    }
}

TEST(CliFanOut, TextNamesEachHostAndErrorsGoToStandardError) {
    EndToEndHost host;
    host.names.names[vagent::os::kComputerNameDnsHostname] = "ts";
    EndToEndService first;
    const std::string down = "127.0.0.1:" + RefusedPort();
    const CliRun run = RunCli({"-H", At(first), "-H", down, "--parallel", "1", "host", "name"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, At(first) + ": ts\n");
    EXPECT_THAT(run.err, HasSubstr("vagentctl: " + down + ": "));
}

TEST(CliFanOut, HostsFileLinesWithCommentsAndTheDefaultPort) {
    EndToEndHost host;
    EndToEndService first;
    EndToEndService second;
    vagent::test::TempDir directory;
    const auto file = directory / "hosts";
    std::ofstream(file) << "# the farm\n" << At(first) << "\n\n  127.0.0.1  # by --port\n";
    const CliRun run = RunCli({"--hosts", file.string(), "-p", std::to_string(second.Port()),
                               "--json", "session", "count"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(Hosts(run.JsonLines()), UnorderedElementsAre(At(first), "127.0.0.1"));
}

TEST(CliFanOut, ManyHostsOnFewWorkersEachAnswerOnce) {
    EndToEndHost host;
    EndToEndService service;
    std::vector<std::string> arguments = {"--parallel", "3", "--json"};
    for (int i = 0; i < 10; ++i) {
        arguments.insert(arguments.end(), {"-H", At(service)});
    }
    arguments.insert(arguments.end(), {"session", "count"});
    const CliRun run = RunCli(arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    const std::vector<Json> lines = run.JsonLines();
    EXPECT_EQ(lines.size(), 10u);
    EXPECT_TRUE(std::all_of(lines.begin(), lines.end(), [](const Json& line) {
        return line["ok"] == true && line["result"] == 0;
    }));
}

TEST(CliFanOut, AHostNameIsResolvedAndShownAsGiven) {
    EndToEndHost host;
    EndToEndService service;
    const std::string named = "localhost:" + std::to_string(service.Port());
    const CliRun run = RunCli({"-H", named, "--json", "session", "count"});
    EXPECT_EQ(run.status, 0) << run.err;
    ASSERT_EQ(run.JsonLines().size(), 1u);
    EXPECT_EQ(run.JsonLines()[0]["host"], named);
}

TEST(CliFanOut, AnUnresolvableNameIsThatHostsError) {
    const CliRun run = RunCli({"-H", "no-such-host.invalid", "--json", "host", "name"});
    EXPECT_EQ(run.status, 1);
    ASSERT_EQ(run.JsonLines().size(), 1u);
    EXPECT_THAT(run.JsonLines()[0]["error"]["text"].get<std::string>(),
                HasSubstr("cannot resolve no-such-host.invalid"));
}
