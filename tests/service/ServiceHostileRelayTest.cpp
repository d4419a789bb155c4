#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <thread>

#include "helpers/TempDir.h"
#include "os/Sockets.h"
#include "service/EndToEndHost.h"
#include "service/EndToEndService.h"
#include "service/TestClient.h"

using vagent::os::kInvalidSocket;
using vagent::os::SocketHandle;
using vagent::test::Append;
using vagent::test::Bytes;
using vagent::test::CallService;
using vagent::test::EndFrameBytes;
using vagent::test::EndToEndHost;
using vagent::test::EndToEndService;
using vagent::test::FileTransferBytes;
using vagent::test::ReadEnd;
using vagent::test::Received;
using vagent::test::RequestFrameBytes;
using vagent::test::TempDir;
using vagent::test::TextBlockBytes;
using vagent::test::ToLibraryPath;
using vagent::test::TransferFrameBytes;

// A relay host that answers a copy with names of its own choosing: what it
// streams is as untrusted as any request, and nothing may land outside the
// destination the requester named.

namespace {

constexpr std::uint32_t kFilesCopy = 44;
constexpr std::uint32_t kLimitMilliseconds = 10000;

vagent::os::Sockets& Sockets() {
    return vagent::os::Installed<vagent::os::Sockets>();
}

// Accepts one connection on 127.0.0.1, reads what the service sends for a
// while, then answers with the stream it was given and closes.
class HostileRelay {
public:
    explicit HostileRelay(Bytes answer) : answer_(std::move(answer)) {
        Sockets().Startup();
        Sockets().OpenStream(listener_);
        Sockets().Bind(listener_, "127.0.0.1", 0);
        Sockets().Listen(listener_, 1);
        Sockets().LocalPort(listener_, port_);
        thread_ = std::thread([this] { AnswerOne(); });
    }
    ~HostileRelay() {
        thread_.join();
        Sockets().Close(listener_);
        Sockets().Cleanup();
    }
    HostileRelay(const HostileRelay&) = delete;
    HostileRelay& operator=(const HostileRelay&) = delete;

    std::uint16_t Port() const { return port_; }

private:
    void AnswerOne() {
        SocketHandle connection = kInvalidSocket;
        if (Sockets().Accept(listener_, connection) != 0) {
            return;
        }
        // The request is read as far as it comes within a short limit; what
        // it says does not change the answer.
        Sockets().SetReceiveTimeout(connection, 500);
        std::uint8_t scratch[4096];
        int received = 0;
        Sockets().Receive(connection, scratch, sizeof scratch, 0, received);
        int sent = 0;
        Sockets().Send(connection, answer_.data(), static_cast<int>(answer_.size()), 0, sent);
        Sockets().Shutdown(connection);
        Sockets().Close(connection);
    }

    Bytes answer_;
    SocketHandle listener_ = kInvalidSocket;
    std::uint16_t port_ = 0;
    std::thread thread_;
};

}  // namespace

TEST(ServiceHostileRelay, NamesOutsideTheDestinationAreNotWritten) {
    EndToEndHost host;
    TempDir target;
    const std::string destination = ToLibraryPath(target / "here");
    const std::string outside = ToLibraryPath(target / "outside.txt");
    Bytes answer = TransferFrameBytes(0, 0x10, 0, destination);
    Append(answer, FileTransferBytes(destination + "\\..\\escaped.txt", 0x20, "escaped"));
    Append(answer, FileTransferBytes(outside, 0x20, "outside"));
    Append(answer, EndFrameBytes(0));
    HostileRelay relay(answer);
    EndToEndService service;
    ASSERT_TRUE(service.Started()) << service.StartStatus();
    const Received reply =
        CallService(service.Port(),
                    RequestFrameBytes(kFilesCopy, 0, "",
                                      TextBlockBytes({"127.0.0.1", std::to_string(relay.Port()),
                                                      "C:\\source", destination, "1", "0"})),
                    kLimitMilliseconds);
    EXPECT_TRUE(reply.Dropped() || reply.end == ReadEnd::kComplete);
    EXPECT_FALSE(std::filesystem::exists(target / "outside.txt"));
    EXPECT_FALSE(std::filesystem::exists(target / "escaped.txt"));
    EXPECT_EQ(reply.bytes, EndFrameBytes(0xE6000001u));
}
