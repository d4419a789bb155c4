#include "files/RelayConnection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "helpers/LogCapture.h"
#include "helpers/TaskRun.h"
#include "task/ScriptedSockets.h"
#include "vagent/LdapRootSite.h"
#include "vagent/VTaskClient.h"

using ::testing::ElementsAre;
using vagent::files::RelayConnection;
using vagent::os::kInvalidSocket;
using vagent::os::ScopedFacility;
using vagent::test::ListBlock;
using vagent::test::ScriptedSockets;
using Bytes = std::vector<std::uint8_t>;

namespace {

constexpr std::uint32_t kFilesCopy = 44;

// Sets the process-wide root site for the scope and puts the old one back.
class ScopedRootSite {
public:
    explicit ScopedRootSite(std::string site) : previous_(GetLDAPRootSite()) {
        SetLDAPRootSite(site);
    }
    ~ScopedRootSite() { SetLDAPRootSite(previous_); }
    ScopedRootSite(const ScopedRootSite&) = delete;
    ScopedRootSite& operator=(const ScopedRootSite&) = delete;

private:
    std::string previous_;
};

const std::vector<std::string> kItems = {"", "0", "C:\\from", "C:\\to", "1", "0"};

}  // namespace

TEST(RelayConnectionOverTheTaskClient, SendsTheFrameTheTaskClientSendsForTheSameRequest) {
    ScopedRootSite rootSite("OU=Relay");
    ScriptedSockets relaySockets;
    {
        ScopedFacility<vagent::os::Sockets> scope(relaySockets);
        RelayConnection relay;
        EXPECT_EQ(relay.SendRequest("10.0.0.9", "5555", kFilesCopy, 3, kItems), 0u);
        EXPECT_EQ(relay.Socket(), ScriptedSockets::kOpenedSocket);
    }
    ScriptedSockets clientSockets;
    {
        ScopedFacility<vagent::os::Sockets> scope(clientSockets);
        VTaskClient client;
        client.SetServer("10.0.0.9", "5555");
        ASSERT_EQ(client.SetTask(kFilesCopy), 1);
        const Bytes block = ListBlock(kItems);
        ASSERT_EQ(client.AddRequest(block.data(), static_cast<std::int32_t>(block.size())), 1);
        ASSERT_EQ(client.SendRequest(3, "OU=Relay", kInvalidSocket, nullptr), 1);
    }
    ASSERT_EQ(relaySockets.sends.size(), 1u);
    ASSERT_EQ(clientSockets.sends.size(), 1u);
    EXPECT_EQ(relaySockets.sends.front(), clientSockets.sends.front());
    EXPECT_EQ(relaySockets.connectedAddress, "10.0.0.9");
    EXPECT_EQ(relaySockets.connectedPort, 5555);
    EXPECT_EQ(relaySockets.receiveTimeLimit, 5000u);
}

TEST(RelayConnectionOverTheTaskClient, ClosesItsConnectionAndStopsTheSocketLibraryOnce) {
    ScriptedSockets sockets;
    {
        ScopedFacility<vagent::os::Sockets> scope(sockets);
        RelayConnection relay;
        EXPECT_EQ(relay.SendRequest("10.0.0.9", "5555", kFilesCopy, 0, kItems), 0u);
    }
    EXPECT_EQ(sockets.startups, 1);
    EXPECT_EQ(sockets.cleanups, 1);
    EXPECT_EQ(sockets.closed, std::vector<std::uintptr_t>{ScriptedSockets::kOpenedSocket});
}

TEST(RelayConnectionOverTheTaskClient, RefusedConnectGivesItsStatusAndTheClientsLogLines) {
    vagent::test::LogCapture capture;
    ScriptedSockets sockets;
    sockets.connectStatus = vagent::os::kSocketConnectionRefused;
    ScopedFacility<vagent::os::Sockets> scope(sockets);
    RelayConnection relay;
    EXPECT_EQ(relay.SendRequest("10.0.0.9", "5555", kFilesCopy, 0, kItems), 10061u);
    EXPECT_EQ(relay.Socket(), kInvalidSocket);
    EXPECT_THAT(capture.Texts(), ElementsAre("connect failed", "ConnectServer failed"));
}

TEST(RelayConnectionOverTheTaskClient, ShortSendGivesANonZeroStatus) {
    vagent::test::LogCapture capture;
    ScriptedSockets sockets;
    sockets.sendShortBy = 3;
    ScopedFacility<vagent::os::Sockets> scope(sockets);
    RelayConnection relay;
    EXPECT_NE(relay.SendRequest("10.0.0.9", "5555", kFilesCopy, 0, kItems), 0u);
    EXPECT_THAT(capture.Texts(), ElementsAre("Send Data of Request failed"));
}
