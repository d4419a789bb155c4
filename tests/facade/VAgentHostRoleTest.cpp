#include <gtest/gtest.h>

#include <string>

#include "service/EndToEndHost.h"
#include "vagent/VAgent.h"

// The computer-role checks always run on this machine, whatever host the
// agent names: here the agent names a port where no service listens, and
// the answers still come from this machine's server list.

namespace {

// No service listens on port 1 of the loopback address.
const char kClosedPort[] = "1";
constexpr std::uint32_t kMemberServer = 0x1003;
constexpr std::uint32_t kController = 0x100B;

}  // namespace

TEST(VAgentHostRole, IsDnCtrlReadsThisMachinesServerList) {
    vagent::test::EndToEndHost host;
    host.accounts.servers = {vagent::os::ServerInfo101{L"TS01", kController}};
    int isController = -1;
    EXPECT_EQ(VAgent::IsDnCtrl(isController), 1);
    EXPECT_EQ(isController, 1);
    EXPECT_FALSE(host.accounts.calls.empty());
}

TEST(VAgentHostRole, IsComputerTellsAMemberOfTheDomain) {
    vagent::test::EndToEndHost host;
    host.accounts.servers = {vagent::os::ServerInfo101{L"TS01", kMemberServer}};
    int isMember = -1;
    EXPECT_EQ(VAgent::IsComputer(isMember), 1);
    EXPECT_EQ(isMember, 1);
}

TEST(VAgentHostRole, GetDnCtrlFindsTheControllerHereAndKeepsTheErrorCode) {
    vagent::test::EndToEndHost host;
    host.accounts.servers = {vagent::os::ServerInfo101{L"TS01", kMemberServer},
                             vagent::os::ServerInfo101{L"DC01", kController}};
    VAgent agent(0, "127.0.0.1", kClosedPort);
    agent.SetErrorCode(42);
    std::string name;
    EXPECT_EQ(agent.GetDnCtrl(name), 1);
    EXPECT_EQ(name, "DC01");
    EXPECT_EQ(agent.GetErrorCode(), 42u);
}

TEST(VAgentHostRole, GetDnCtrlWithoutAControllerLeavesTheName) {
    vagent::test::EndToEndHost host;
    host.accounts.servers = {vagent::os::ServerInfo101{L"TS01", kMemberServer}};
    VAgent agent;
    std::string name = "unchanged";
    EXPECT_EQ(agent.GetDnCtrl(name), 0);
    EXPECT_EQ(name, "unchanged");
}
