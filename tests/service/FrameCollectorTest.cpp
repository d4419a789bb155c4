#include "FrameCollector.h"

#include <gtest/gtest.h>

#include <mutex>
#include <thread>

#include "helpers/LogCapture.h"
#include "platform/ServiceSockets.h"
#include "service/TestClient.h"
#include "service/TestClientFrames.h"

namespace vagent::service {
namespace {

using vagent::test::Bytes;
using vagent::test::LogCapture;
using vagent::test::RequestFrameBytes;
using vagent::test::TestClient;

os::Sockets& Net() {
    return os::Installed<os::Sockets>();
}

// A collector on its own thread over a loopback listener; what it
// dispatches is kept for the test.
class RunningCollector {
public:
    explicit RunningCollector(CollectorSettings settings,
                              std::uint64_t heldBudget = std::uint64_t{1} << 30)
        : held_(heldBudget) {
        Net().Startup();
        Net().OpenStream(listener_);
        Net().Bind(listener_, "127.0.0.1", 0);
        Net().Listen(listener_, 16);
        platform::SetNonBlocking(listener_, true);
        Net().LocalPort(listener_, port_);
        std::string error;
        settings.allow.Parse({"127.0.0.0/8"}, error);
        collector_ = std::make_unique<FrameCollector>(
            listener_, std::move(settings), open_, held_,
            [this](AcceptedConnection connection, RequestFrame frame) {
                const std::lock_guard<std::mutex> lock(mutex_);
                dispatched_.push_back({std::move(connection), std::move(frame)});
            });
        thread_ = std::thread([this] { collector_->Run(stopping_); });
    }
    ~RunningCollector() {
        stopping_ = true;
        thread_.join();
        for (auto& entry : dispatched_) {
            Net().Close(entry.first.socket);
        }
        Net().Close(listener_);
        Net().Cleanup();
    }
    RunningCollector(const RunningCollector&) = delete;
    RunningCollector& operator=(const RunningCollector&) = delete;

    std::uint16_t Port() const { return port_; }
    unsigned Open() const { return open_.load(); }
    std::uint64_t Held() const { return held_.Held(); }
    // Waits up to two seconds for the count-th dispatch.
    bool WaitForDispatch(std::size_t count) {
        for (int i = 0; i < 200; ++i) {
            {
                const std::lock_guard<std::mutex> lock(mutex_);
                if (dispatched_.size() >= count) {
                    return true;
                }
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }
    std::pair<AcceptedConnection, RequestFrame>& Dispatched(std::size_t index) {
        const std::lock_guard<std::mutex> lock(mutex_);
        return dispatched_.at(index);
    }

private:
    os::SocketHandle listener_ = os::kInvalidSocket;
    std::uint16_t port_ = 0;
    std::atomic<unsigned> open_{0};
    HeldBytes held_;
    std::atomic<bool> stopping_{false};
    std::unique_ptr<FrameCollector> collector_;
    std::mutex mutex_;
    std::vector<std::pair<AcceptedConnection, RequestFrame>> dispatched_;
    std::thread thread_;
};

TEST(FrameCollector, DispatchesACompleteFrameWithItsConnection) {
    RunningCollector collector{CollectorSettings{}};
    TestClient client;
    ASSERT_TRUE(client.Connect(collector.Port()));
    ASSERT_TRUE(client.Send(RequestFrameBytes(24, 7, "CN=Users", {0, 0, 0, 1, 9})));
    ASSERT_TRUE(collector.WaitForDispatch(1));
    auto& [connection, frame] = collector.Dispatched(0);
    EXPECT_EQ(frame.taskId, 24u);
    EXPECT_EQ(frame.workEnv, 7);
    EXPECT_EQ(frame.rootSite, "CN=Users");
    EXPECT_EQ(frame.block, (Bytes{0, 0, 0, 1, 9}));
    EXPECT_EQ(connection.peer.rfind("127.0.0.1:", 0), 0u);
    EXPECT_EQ(collector.Open(), 1u);
}

TEST(FrameCollector, LeavesWhatFollowsTheFrameOnTheConnection) {
    RunningCollector collector{CollectorSettings{}};
    TestClient client;
    ASSERT_TRUE(client.Connect(collector.Port()));
    Bytes bytes = RequestFrameBytes(45, 0, "", {0, 0, 0, 0});
    bytes.insert(bytes.end(), {'n', 'e', 'x', 't'});
    ASSERT_TRUE(client.Send(bytes));
    ASSERT_TRUE(collector.WaitForDispatch(1));
    const os::SocketHandle socket = collector.Dispatched(0).first.socket;
    platform::SetNonBlocking(socket, false);
    Net().SetReceiveTimeout(socket, 2000);
    char rest[4] = {};
    int received = 0;
    ASSERT_EQ(Net().Receive(socket, rest, 4, 0, received), 0u);
    EXPECT_EQ(std::string(rest, static_cast<std::size_t>(received)), "next");
}

TEST(FrameCollector, DropsAFrameNotCompleteWithinTheTimeLimit) {
    LogCapture capture;
    CollectorSettings settings;
    settings.frameTimeLimit = std::chrono::milliseconds(300);
    RunningCollector collector{settings};
    TestClient client;
    ASSERT_TRUE(client.Connect(collector.Port()));
    ASSERT_TRUE(client.Send({0, 0, 0, 34, 0, 0}));
    const vagent::test::Received end = client.ReadUntilEnd(3000);
    EXPECT_TRUE(end.Dropped());
    EXPECT_TRUE(end.bytes.empty());
    const std::vector<std::string> texts = capture.Texts();
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(texts[0].rfind("vagentd : dropped connection from 127.0.0.1:", 0), 0u);
    EXPECT_NE(texts[0].find(" : request not complete within 300 ms"), std::string::npos)
        << texts[0];
    EXPECT_EQ(collector.Open(), 0u);
}

TEST(FrameCollector, AnIdleConnectionIsDroppedAfterTheDefaultFiveSeconds) {
    LogCapture capture;
    RunningCollector collector{CollectorSettings{}};
    TestClient client;
    ASSERT_TRUE(client.Connect(collector.Port()));
    const auto start = std::chrono::steady_clock::now();
    const vagent::test::Received end = client.ReadUntilEnd(8000);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_TRUE(end.Dropped());
    EXPECT_GE(waited, std::chrono::milliseconds(4500));
    ASSERT_FALSE(capture.Texts().empty());
    EXPECT_NE(capture.Texts().back().find(" : request not complete within 5000 ms"),
              std::string::npos);
}

TEST(FrameCollector, EachRefusedFrameNamesItsReason) {
    LogCapture capture;
    RunningCollector collector{CollectorSettings{}};
    const std::vector<std::pair<Bytes, std::string>> cases = {
        {{0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 1}, "root site length 65537 over the limit"},
        {{0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF},
         "block length 4294967295 over the limit"},
        {{0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 1, 1},
         "block length 2 shorter than its own prefix"},
        {{0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 8, 0, 0, 0, 9},
         "block prefix 9 disagrees with the block length"},
    };
    for (const auto& [bytes, reason] : cases) {
        TestClient client;
        ASSERT_TRUE(client.Connect(collector.Port()));
        ASSERT_TRUE(client.Send(bytes));
        EXPECT_TRUE(client.ReadUntilEnd(3000).Dropped()) << reason;
        const std::string last = capture.Texts().empty() ? "" : capture.Texts().back();
        EXPECT_NE(last.find(" : " + reason), std::string::npos) << last;
    }
}

// Waits up to two seconds for the condition to hold.
template <class Condition>
void WaitUntil(Condition condition) {
    for (int i = 0; i < 200 && !condition(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

// Frame bytes: the 12-byte header, no root site, the 4-byte block length, then
// the first part of a block of blockLength bytes whose own prefix is right.
Bytes PartOfABlock(std::uint32_t blockLength, std::size_t blockBytesSent) {
    Bytes block = vagent::test::BigEndianBytes(blockLength - 4);
    block.resize(blockLength, 'a');
    Bytes bytes = RequestFrameBytes(29, 0, "", block);
    bytes.resize(16 + blockBytesSent);
    return bytes;
}

TEST(FrameCollector, CountsEveryByteItHoldsAndHandsTheCountOnWithTheConnection) {
    RunningCollector collector{CollectorSettings{}};
    TestClient client;
    ASSERT_TRUE(client.Connect(collector.Port()));
    const Bytes frame = RequestFrameBytes(24, 7, "CN=Users", {0, 0, 0, 1, 9});
    ASSERT_TRUE(client.Send(frame));
    ASSERT_TRUE(collector.WaitForDispatch(1));
    EXPECT_EQ(collector.Dispatched(0).first.heldBytes, frame.size());
    EXPECT_EQ(collector.Held(), frame.size());
}

TEST(FrameCollector, ConnectionWhoseBytesWouldGoOverTheBudgetIsDroppedAndLogged) {
    LogCapture capture;
    RunningCollector collector{CollectorSettings{}, 10000};
    TestClient first;
    ASSERT_TRUE(first.Connect(collector.Port()));
    ASSERT_TRUE(first.Send(PartOfABlock(8000, 6000)));
    WaitUntil([&] { return collector.Held() >= 6016; });
    ASSERT_EQ(collector.Held(), 6016u);
    TestClient second;
    ASSERT_TRUE(second.Connect(collector.Port()));
    ASSERT_TRUE(second.Send(PartOfABlock(8000, 6000)));
    EXPECT_TRUE(second.ReadUntilEnd(3000).Dropped());
    const std::string last = capture.Texts().empty() ? "" : capture.Texts().back();
    EXPECT_EQ(last.rfind("vagentd : dropped connection from 127.0.0.1:", 0), 0u) << last;
    EXPECT_NE(last.find(" : requests held over the budget of 10000 bytes"), std::string::npos)
        << last;
    // What the dropped connection had read is given back; the first
    // connection's frame still completes.
    ASSERT_TRUE(first.Send(Bytes(2000, 'a')));
    ASSERT_TRUE(collector.WaitForDispatch(1));
    EXPECT_EQ(collector.Dispatched(0).first.heldBytes, 8016u);
    EXPECT_EQ(collector.Held(), 8016u);
}

TEST(FrameCollector, DroppedConnectionGivesBackWhatItHeld) {
    LogCapture capture;
    RunningCollector collector{CollectorSettings{}};
    {
        TestClient client;
        ASSERT_TRUE(client.Connect(collector.Port()));
        ASSERT_TRUE(client.Send(PartOfABlock(8000, 3000)));
        WaitUntil([&] { return collector.Held() >= 3016; });
        ASSERT_EQ(collector.Held(), 3016u);
    }
    WaitUntil([&] { return collector.Open() == 0; });
    EXPECT_EQ(collector.Open(), 0u);
    EXPECT_EQ(collector.Held(), 0u);
}

}  // namespace
}  // namespace vagent::service
