#include "Server.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "Version.h"
#include "helpers/LogCapture.h"
#include "service/TestClient.h"
#include "service/TestClientFrames.h"
#include "task/ByteOrder.h"
#include "vagent/ErrorCodes.h"

namespace vagent::service {
namespace {

using vagent::test::Bytes;
using vagent::test::CallService;
using vagent::test::LogCapture;
using vagent::test::Received;
using vagent::test::RequestFrameBytes;
using vagent::test::TestClient;

constexpr std::uint32_t kReplyLimitMilliseconds = 3000;

ServerOptions Loopback() {
    ServerOptions options;
    options.listenAddress = "127.0.0.1";
    options.listenPort = 0;
    options.workers = 2;
    return options;
}

bool HasLineStartingWith(const std::vector<std::string>& texts, const std::string& start) {
    for (const std::string& text : texts) {
        if (text.rfind(start, 0) == 0) {
            return true;
        }
    }
    return false;
}

// The reader logs a drop on its own thread; give it a moment to land.
bool WaitForLineStartingWith(const LogCapture& capture, const std::string& start) {
    for (int i = 0; i < 100; ++i) {
        if (HasLineStartingWith(capture.Texts(), start)) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

TEST(Server, AnswersAHostNameRequestOverLoopback) {
    LogCapture capture;
    Server server(Loopback());
    ASSERT_EQ(server.Start(), 0u);
    ASSERT_NE(server.Port(), 0);
    const Received reply =
        CallService(server.Port(), RequestFrameBytes(34, 0, "", {}), kReplyLimitMilliseconds);
    EXPECT_FALSE(reply.end == vagent::test::ReadEnd::kTimedOut);
    ASSERT_GE(reply.bytes.size(), 12u);
    EXPECT_EQ(ReadLittleEndian32(reply.bytes.data()), 0u);
    EXPECT_EQ(ReadBigEndian32(reply.bytes.data() + 4), reply.bytes.size() - 8);
    server.Stop();
    const std::vector<std::string> texts = capture.Texts();
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0], std::string("vagentd : started, version ") + VagentdVersion() +
                            ", listening on 127.0.0.1:" + std::to_string(server.Port()) +
                            ", allowing 127.0.0.0/8");
    EXPECT_EQ(texts[1], "vagentd : stopped");
}

TEST(Server, StopTwiceIsHarmlessAndClosesTheListener) {
    LogCapture capture;
    Server server(Loopback());
    ASSERT_EQ(server.Start(), 0u);
    const std::uint16_t port = server.Port();
    server.Stop();
    server.Stop();
    TestClient client;
    EXPECT_FALSE(client.Connect(port));
    EXPECT_EQ(capture.Texts().back(), "vagentd : stopped");
}

TEST(Server, OptionsThatCannotBeServedAreRefused) {
    ServerOptions badAddress = Loopback();
    badAddress.listenAddress = "localhost";
    EXPECT_EQ(Server(badAddress).Start(), kErrorInvalidParameter);
    ServerOptions badAllow = Loopback();
    badAllow.allow = {"127.0.0.0/40"};
    EXPECT_EQ(Server(badAllow).Start(), kErrorInvalidParameter);
    ServerOptions noWorkers = Loopback();
    noWorkers.workers = 0;
    EXPECT_EQ(Server(noWorkers).Start(), kErrorInvalidParameter);
    ServerOptions noConnections = Loopback();
    noConnections.maxConnections = 0;
    EXPECT_EQ(Server(noConnections).Start(), kErrorInvalidParameter);
}

TEST(Server, APortInUseIsASocketError) {
    Server first(Loopback());
    ASSERT_EQ(first.Start(), 0u);
    ServerOptions same = Loopback();
    same.listenPort = first.Port();
    EXPECT_EQ(Server(same).Start(), os::kSocketAddressInUse);
}

TEST(Server, ClientsOffTheAllowListAreClosedUnansweredAndLogged) {
    LogCapture capture;
    ServerOptions options = Loopback();
    options.allow = {"10.0.0.0/8"};
    Server server(options);
    ASSERT_EQ(server.Start(), 0u);
    const Received reply =
        CallService(server.Port(), RequestFrameBytes(34, 0, "", {}), kReplyLimitMilliseconds);
    EXPECT_TRUE(reply.Dropped());
    EXPECT_TRUE(reply.bytes.empty());
    EXPECT_TRUE(WaitForLineStartingWith(capture, "vagentd : refused connection from 127.0.0.1:"));
    const std::string line = capture.Texts().back();
    EXPECT_NE(line.find(" : not on the allow-list"), std::string::npos) << line;
}

TEST(Server, ABlockOverTheLimitIsDroppedAndLogged) {
    LogCapture capture;
    ServerOptions options = Loopback();
    options.maxBlock = 16;
    Server server(options);
    ASSERT_EQ(server.Start(), 0u);
    Bytes frame = RequestFrameBytes(34, 0, "", {});
    frame.resize(12);
    vagent::test::Append(frame, vagent::test::BigEndianBytes(100));
    const Received reply = CallService(server.Port(), frame, kReplyLimitMilliseconds);
    EXPECT_TRUE(reply.Dropped());
    EXPECT_TRUE(reply.bytes.empty());
    ASSERT_TRUE(WaitForLineStartingWith(capture, "vagentd : dropped connection from 127.0.0.1:"));
    EXPECT_NE(capture.Texts().back().find(" : block length 100 over the limit"), std::string::npos)
        << capture.Texts().back();
}

TEST(Server, AFrameCutShortByThePeerIsDroppedAndLogged) {
    LogCapture capture;
    Server server(Loopback());
    ASSERT_EQ(server.Start(), 0u);
    TestClient client;
    ASSERT_TRUE(client.Connect(server.Port()));
    Bytes frame = RequestFrameBytes(34, 0, "CN=Users", {});
    frame.resize(14);
    ASSERT_TRUE(client.Send(frame));
    client.Close();
    ASSERT_TRUE(WaitForLineStartingWith(capture, "vagentd : dropped connection from 127.0.0.1:"));
    EXPECT_NE(capture.Texts().back().find(" : closed before the request was complete"),
              std::string::npos)
        << capture.Texts().back();
}

TEST(Server, ConnectionsBeyondTheCapAreClosedAndLogged) {
    LogCapture capture;
    ServerOptions options = Loopback();
    options.maxConnections = 1;
    Server server(options);
    ASSERT_EQ(server.Start(), 0u);
    TestClient idle;
    ASSERT_TRUE(idle.Connect(server.Port()));
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    const Received reply =
        CallService(server.Port(), RequestFrameBytes(34, 0, "", {}), kReplyLimitMilliseconds);
    EXPECT_TRUE(reply.Dropped());
    EXPECT_TRUE(reply.bytes.empty());
    ASSERT_TRUE(WaitForLineStartingWith(capture, "vagentd : refused connection from 127.0.0.1:"));
    EXPECT_NE(capture.Texts().back().find(" : 1 connections open"), std::string::npos)
        << capture.Texts().back();
}

}  // namespace
}  // namespace vagent::service
