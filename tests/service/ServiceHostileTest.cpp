#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "helpers/LogCapture.h"
#include "service/EndToEndHost.h"
#include "service/EndToEndService.h"
#include "service/TestClient.h"

using vagent::service::ServerOptions;
using vagent::test::AckBlockBytes;
using vagent::test::Append;
using vagent::test::BigEndianBytes;
using vagent::test::Bytes;
using vagent::test::CallService;
using vagent::test::EndToEndHost;
using vagent::test::EndToEndService;
using vagent::test::ItemBlockBytes;
using vagent::test::LogCapture;
using vagent::test::ReadEnd;
using vagent::test::Received;
using vagent::test::ReplyBytes;
using vagent::test::RequestFrameBytes;
using vagent::test::TestClient;
using vagent::test::TextBlockBytes;

// Bytes no honest client sends, and more connections than the service
// serves. After each, a valid call must still be answered.

namespace {

constexpr std::uint32_t kReplyLimitMilliseconds = 10000;
// Shorter than the service's 5-second limit for a whole frame, so that a
// drop seen within it is the service refusing the frame, not timing it out.
constexpr std::uint32_t kPromptDropMilliseconds = 4000;
constexpr std::uint32_t kRootSiteCap = 64 * 1024;
constexpr std::uint32_t kFourGiBClaim = 0xFFFFFFFFu;
constexpr std::uint32_t kGetHostVersion = 35;
constexpr std::uint32_t kIsFileExist = 29;
constexpr std::uint32_t kAddGroup = 15;

Bytes HostVersionFrame() {
    return RequestFrameBytes(kGetHostVersion, 0, "", Bytes{});
}

// What the in-memory host answers to the version request (6.1 is code 9).
Bytes HostVersionReply() {
    return ReplyBytes(0, TextBlockBytes({"9"}));
}

Bytes FrameHead(std::uint32_t taskId, std::uint32_t rootSiteLength) {
    Bytes head = BigEndianBytes(taskId);
    Append(head, BigEndianBytes(0));
    Append(head, BigEndianBytes(rootSiteLength));
    return head;
}

// Sends bytes and goes away without waiting for anything.
void SendAndLeave(std::uint16_t port, const Bytes& bytes) {
    TestClient client;
    ASSERT_TRUE(client.Connect(port));
    ASSERT_TRUE(client.Send(bytes));
}

Received SendAndRead(std::uint16_t port, const Bytes& bytes, std::uint32_t limitMilliseconds) {
    TestClient client;
    Received failed;
    if (!client.Connect(port) || !client.Send(bytes)) {
        return failed;
    }
    return client.ReadUntilEnd(limitMilliseconds);
}

void ExpectStillServing(std::uint16_t port) {
    const Received reply = CallService(port, HostVersionFrame(), kReplyLimitMilliseconds);
    EXPECT_EQ(reply.bytes, HostVersionReply());
    EXPECT_EQ(reply.end, ReadEnd::kClosed);
}

void ExpectDroppedWithoutAnswer(const Received& reply) {
    EXPECT_TRUE(reply.Dropped()) << "ended as " << static_cast<int>(reply.end);
    EXPECT_TRUE(reply.bytes.empty());
}

// The process's peak of virtual memory in KiB, from the system's process
// status; 0 where there is none to read.
std::uint64_t PeakVirtualKiB() {
    std::ifstream status("/proc/self/status");
    std::string key;
    while (status >> key) {
        if (key == "VmPeak:") {
            std::uint64_t kib = 0;
            status >> kib;
            return kib;
        }
        status.ignore(1 << 12, '\n');
    }
    return 0;
}

// A 4 GiB buffer, had the service made one, would show in the peak.
void ExpectNoGiantAllocationSince(std::uint64_t peakBefore) {
    const std::uint64_t peakAfter = PeakVirtualKiB();
    if (peakBefore != 0 && peakAfter != 0) {
        EXPECT_LT(peakAfter - peakBefore, 1024u * 1024u) << "KiB of new peak virtual memory";
    }
}

// Calls until the service answers, a bounded number of times, for a slot
// that the service frees only once it has seen a peer go.
Received CallUntilAnswered(std::uint16_t port, int attempts) {
    Received reply;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        reply = CallService(port, HostVersionFrame(), kReplyLimitMilliseconds);
        if (!reply.bytes.empty()) {
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return reply;
}

class ServiceHostile : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(service_.Started()) << service_.StartStatus(); }

    std::uint16_t Port() const { return service_.Port(); }

    LogCapture log_;
    EndToEndHost host_;
    EndToEndService service_;
};

// A service with its own options, for the tests of the caps and the
// allow-list.
class ServiceHostileOptions : public ::testing::Test {
protected:
    LogCapture log_;
    EndToEndHost host_;
};

}  // namespace

TEST_F(ServiceHostile, TruncatedHeaderFromAPeerThatLeavesIsDropped) {
    const Bytes frame = HostVersionFrame();
    SendAndLeave(Port(), Bytes(frame.begin(), frame.begin() + 6));
    ExpectStillServing(Port());
}

TEST_F(ServiceHostile, TruncatedRootSiteFromAPeerThatLeavesIsDropped) {
    Bytes bytes = FrameHead(kGetHostVersion, 10);
    Append(bytes, Bytes{'C', 'N', '='});
    SendAndLeave(Port(), bytes);
    ExpectStillServing(Port());
}

TEST_F(ServiceHostile, TruncatedBlockFromAPeerThatLeavesIsDropped) {
    Bytes bytes = FrameHead(kAddGroup, 0);
    Append(bytes, BigEndianBytes(100));
    Append(bytes, Bytes(20, 0));
    SendAndLeave(Port(), bytes);
    ExpectStillServing(Port());
    EXPECT_TRUE(host_.accounts.localGroups.empty());
}

TEST_F(ServiceHostile, RootSiteClaimOf4GiBIsDroppedWithoutAllocatingIt) {
    const std::uint64_t peakBefore = PeakVirtualKiB();
    const Received reply =
        SendAndRead(Port(), FrameHead(kGetHostVersion, kFourGiBClaim), kPromptDropMilliseconds);
    ExpectDroppedWithoutAnswer(reply);
    ExpectNoGiantAllocationSince(peakBefore);
    ExpectStillServing(Port());
}

TEST_F(ServiceHostile, BlockClaimOf4GiBIsDroppedWithoutAllocatingIt) {
    const std::uint64_t peakBefore = PeakVirtualKiB();
    Bytes bytes = FrameHead(kGetHostVersion, 0);
    Append(bytes, BigEndianBytes(kFourGiBClaim));
    const Received reply = SendAndRead(Port(), bytes, kPromptDropMilliseconds);
    ExpectDroppedWithoutAnswer(reply);
    ExpectNoGiantAllocationSince(peakBefore);
    ExpectStillServing(Port());
}

TEST_F(ServiceHostile, RootSiteAtTheCapIsServedAndOneByteMoreIsDropped) {
    const std::string atCap(kRootSiteCap, 'x');
    const Received served = CallService(
        Port(), RequestFrameBytes(kGetHostVersion, 0, atCap, Bytes{}), kReplyLimitMilliseconds);
    EXPECT_EQ(served.bytes, HostVersionReply());
    const Received dropped =
        SendAndRead(Port(), RequestFrameBytes(kGetHostVersion, 0, atCap + "x", Bytes{}),
                    kPromptDropMilliseconds);
    ExpectDroppedWithoutAnswer(dropped);
    ExpectStillServing(Port());
}

TEST_F(ServiceHostile, UnknownTaskIdsAreAnsweredWithInvalidParameterAndClosed) {
    for (const std::uint32_t id : {0u, 48u, 0xFFFFFFFFu}) {
        const Received reply =
            CallService(Port(), RequestFrameBytes(id, 0, "", Bytes{}), kReplyLimitMilliseconds);
        EXPECT_EQ(reply.bytes, (Bytes{0x01, 0x00, 0x00, 0xE6})) << "id " << id;
        EXPECT_TRUE(reply.Dropped()) << "id " << id;
    }
    ExpectStillServing(Port());
}

TEST_F(ServiceHostile, BlockShorterThanItsOwnPrefixIsDroppedUnserved) {
    const Received reply =
        SendAndRead(Port(), RequestFrameBytes(2, 0, "", Bytes{0, 0, 1}), kPromptDropMilliseconds);
    ExpectDroppedWithoutAnswer(reply);
    EXPECT_TRUE(host_.accounts.calls.empty());
    ExpectStillServing(Port());
}

TEST_F(ServiceHostile, BlockWhosePrefixDisagreesWithItsLengthIsDroppedUnserved) {
    Bytes block = TextBlockBytes({"Operators"});
    block[3] = static_cast<std::uint8_t>(block[3] + 1);
    const Received reply =
        SendAndRead(Port(), RequestFrameBytes(kAddGroup, 0, "", block), kPromptDropMilliseconds);
    ExpectDroppedWithoutAnswer(reply);
    EXPECT_TRUE(host_.accounts.localGroups.empty());
    ExpectStillServing(Port());
}

TEST_F(ServiceHostile, ItemClaimingMoreThanItsBlockHoldsIsAFormatErrorNotAnOverread) {
    Bytes block = BigEndianBytes(12);
    Append(block, BigEndianBytes(0xFFFFFFF0u));
    Append(block, Bytes{'g', 'r', 'p', '1', 'x', 'y', 'z', 'w'});
    const Received reply =
        CallService(Port(), RequestFrameBytes(kAddGroup, 0, "", block), kReplyLimitMilliseconds);
    EXPECT_EQ(reply.bytes, ReplyBytes(0, AckBlockBytes(0)));
    EXPECT_TRUE(host_.accounts.localGroups.empty());
    const std::vector<std::string> logged = log_.Texts();
    EXPECT_NE(std::find(logged.begin(), logged.end(), "GetNextDataItem : Data Format Error!"),
              logged.end());
}

TEST_F(ServiceHostile, SilentConnectionIsDroppedOnceTheFrameTimeLimitPasses) {
    TestClient silent;
    ASSERT_TRUE(silent.Connect(Port()));
    const Received reply = silent.ReadUntilEnd(kReplyLimitMilliseconds);
    ExpectDroppedWithoutAnswer(reply);
    ExpectStillServing(Port());
}

TEST_F(ServiceHostileOptions, BlockAtTheLargestAllowedIsServedAndOneByteMoreIsDropped) {
    ServerOptions options = EndToEndService::LoopbackOptions();
    options.maxBlock = 4096;
    EndToEndService service(options);
    ASSERT_TRUE(service.Started()) << service.StartStatus();
    const Bytes atCap = TextBlockBytes({std::string(4096 - 8, 'a')});
    ASSERT_EQ(atCap.size(), 4096u);
    const Received served = CallService(
        service.Port(), RequestFrameBytes(kIsFileExist, 0, "", atCap), kReplyLimitMilliseconds);
    EXPECT_EQ(served.bytes, ReplyBytes(0, ItemBlockBytes({BigEndianBytes(0), BigEndianBytes(0)})));
    const Bytes overCap = TextBlockBytes({std::string(4096 - 7, 'a')});
    const Received dropped = SendAndRead(
        service.Port(), RequestFrameBytes(kIsFileExist, 0, "", overCap), kPromptDropMilliseconds);
    ExpectDroppedWithoutAnswer(dropped);
    ExpectStillServing(service.Port());
}

TEST_F(ServiceHostileOptions, AThousandIdleConnectionsHoldNoWorker) {
    ServerOptions options = EndToEndService::LoopbackOptions();
    options.maxConnections = 1100;
    EndToEndService service(options);
    ASSERT_TRUE(service.Started()) << service.StartStatus();
    std::vector<std::unique_ptr<TestClient>> idle;
    for (int i = 0; i < 1000; ++i) {
        idle.push_back(std::make_unique<TestClient>());
        ASSERT_TRUE(idle.back()->Connect(service.Port())) << "connection " << i;
    }
    // Generous, yet far below what a queue behind a thousand held workers
    // would take.
    const Received reply = CallService(service.Port(), HostVersionFrame(), 3000);
    EXPECT_EQ(reply.bytes, HostVersionReply());
}

TEST_F(ServiceHostileOptions, ConnectionsBeyondTheLimitAreClosedAtOnce) {
    ServerOptions options = EndToEndService::LoopbackOptions();
    options.maxConnections = 4;
    EndToEndService service(options);
    ASSERT_TRUE(service.Started()) << service.StartStatus();
    {
        std::vector<std::unique_ptr<TestClient>> held;
        for (int i = 0; i < 4; ++i) {
            held.push_back(std::make_unique<TestClient>());
            ASSERT_TRUE(held.back()->Connect(service.Port()));
        }
        const Received excess =
            SendAndRead(service.Port(), HostVersionFrame(), kPromptDropMilliseconds);
        ExpectDroppedWithoutAnswer(excess);
    }
    const Received reply = CallUntilAnswered(service.Port(), 20);
    EXPECT_EQ(reply.bytes, HostVersionReply());
}

TEST_F(ServiceHostileOptions, AddressOffTheAllowListIsClosedUnreadAndLogged) {
    ServerOptions options = EndToEndService::LoopbackOptions();
    options.allow = {"127.0.0.1/32"};
    EndToEndService service(options);
    ASSERT_TRUE(service.Started()) << service.StartStatus();
    {
        TestClient outsider;
        ASSERT_TRUE(outsider.Connect(service.Port(), "127.0.0.2"))
            << "a client socket could not be bound to 127.0.0.2";
        outsider.Send(RequestFrameBytes(kAddGroup, 0, "", TextBlockBytes({"Intruders"})));
        ExpectDroppedWithoutAnswer(outsider.ReadUntilEnd(kPromptDropMilliseconds));
    }
    EXPECT_TRUE(host_.accounts.localGroups.empty());
    bool logged = false;
    for (int attempt = 0; attempt < 20 && !logged; ++attempt) {
        for (const std::string& text : log_.Texts()) {
            logged = logged || text.find("127.0.0.2") != std::string::npos;
        }
        if (!logged) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
    }
    EXPECT_TRUE(logged) << "no log line names 127.0.0.2";
    ExpectStillServing(service.Port());
}

TEST_F(ServiceHostileOptions, RequestsThatTogetherGoOverTheHeldBudgetLoseTheOneThatWouldGoOver) {
    ServerOptions options = EndToEndService::LoopbackOptions();
    options.maxBlock = 4096;
    // Below one largest frame, so the budget is exactly one: a 64 KiB root
    // site, a 4 KiB block and the 16 bytes of fields.
    options.maxHeldBytes = 4096;
    EndToEndService service(options);
    ASSERT_TRUE(service.Started()) << service.StartStatus();
    const std::string rootSite(50000, 'r');
    Bytes whole = FrameHead(kGetHostVersion, static_cast<std::uint32_t>(rootSite.size()));
    Append(whole, Bytes(rootSite.begin(), rootSite.end()));
    Append(whole, BigEndianBytes(0));
    const Bytes firstPart(whole.begin(), whole.begin() + 40000);
    const Bytes rest(whole.begin() + 40000, whole.end());
    // Each holds 40,000 bytes: one fits, two do not.
    TestClient first;
    TestClient second;
    ASSERT_TRUE(first.Connect(service.Port()));
    ASSERT_TRUE(first.Send(firstPart));
    ASSERT_TRUE(second.Connect(service.Port()));
    ASSERT_TRUE(second.Send(firstPart));
    first.Send(rest);
    second.Send(rest);
    const Received firstReply = first.ReadUntilEnd(kReplyLimitMilliseconds);
    const Received secondReply = second.ReadUntilEnd(kReplyLimitMilliseconds);
    const bool firstServed = firstReply.bytes == HostVersionReply();
    const bool secondServed = secondReply.bytes == HostVersionReply();
    EXPECT_NE(firstServed, secondServed) << "exactly one of the two must be served";
    EXPECT_TRUE(firstServed ? secondReply.bytes.empty() : firstReply.bytes.empty());
    bool logged = false;
    for (const std::string& text : log_.Texts()) {
        logged = logged ||
                 text.find(" : requests held over the budget of 69648 bytes") != std::string::npos;
    }
    EXPECT_TRUE(logged) << "no log line names the budget";
    // Both connections are over: the whole budget is free again.
    const Received again = CallService(service.Port(), whole, kReplyLimitMilliseconds);
    EXPECT_EQ(again.bytes, HostVersionReply());
    ExpectStillServing(service.Port());
}
