// Feeds arbitrary bytes to the transfer-frame reader as if they arrived on a
// connection. The first byte chooses the receive hooks: bit 0 installs a
// before-receive hook that lowers every count to at most the value of bits
// 1-7 (plus one), so that frames arrive in parts; the rest is the stream.
// Frames are read until one fails or the end frame comes; each name is also
// tested against a destination root.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "files/FileReceiver.h"
#include "files/PathContainment.h"
#include "files/TransferChannel.h"
#include "files/TransferFrame.h"
#include "os/Sockets.h"

namespace {

// A connection that delivers the input's bytes, then reports the peer's
// close; any call a reader should not make aborts.
class ByteFedSockets final : public vagent::os::Sockets {
public:
    void Feed(const std::uint8_t* data, std::size_t size) {
        data_ = data;
        left_ = size;
    }

    std::uint32_t Receive(vagent::os::SocketHandle, void* buffer, int count, int,
                          int& received) override {
        if (count <= 0) {
            std::abort();
        }
        const std::size_t part = std::min(left_, static_cast<std::size_t>(count));
        std::memcpy(buffer, data_, part);
        data_ += part;
        left_ -= part;
        received = static_cast<int>(part);
        return 0;
    }

    std::uint32_t Startup() override { std::abort(); }
    void Cleanup() override { std::abort(); }
    std::uint32_t OpenStream(vagent::os::SocketHandle&) override { std::abort(); }
    std::uint32_t Connect(vagent::os::SocketHandle, const std::string&, std::uint16_t) override {
        std::abort();
    }
    std::uint32_t Bind(vagent::os::SocketHandle, const std::string&, std::uint16_t) override {
        std::abort();
    }
    std::uint32_t Listen(vagent::os::SocketHandle, int) override { std::abort(); }
    std::uint32_t Accept(vagent::os::SocketHandle, vagent::os::SocketHandle&) override {
        std::abort();
    }
    std::uint32_t LocalPort(vagent::os::SocketHandle, std::uint16_t&) override { std::abort(); }
    std::uint32_t Send(vagent::os::SocketHandle, const void*, int, int, int&) override {
        std::abort();
    }
    std::uint32_t SetReceiveTimeout(vagent::os::SocketHandle, std::uint32_t) override {
        std::abort();
    }
    std::uint32_t Shutdown(vagent::os::SocketHandle) override { std::abort(); }
    std::uint32_t Close(vagent::os::SocketHandle) override { std::abort(); }

private:
    const std::uint8_t* data_ = nullptr;
    std::size_t left_ = 0;
};

int largestPart = 1;

int LowerTheCount(std::uintptr_t, int* count) {
    *count = std::min(*count, largestPart);
    return 1;
}

constexpr int kMostFrames = 64;

void ReadFrames(vagent::files::TransferChannel& channel) {
    std::uint32_t errorCode = 0;
    vagent::files::FileReceiver receiver(channel, errorCode);
    for (int frame = 0; frame < kMostFrames; ++frame) {
        FileFrameHeader header;
        if (receiver.ReceiveFrame(header) != vagent::files::FileReceiver::kFileOrDirectory) {
            return;
        }
        if (header.name.size() >= vagent::files::kLargestFrame) {
            std::abort();
        }
        vagent::files::LiesUnder("C:\\dest", header.name);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    static ByteFedSockets sockets;
    vagent::os::ScopedFacility<vagent::os::Sockets> scope(sockets);
    sockets.Feed(data + 1, size - 1);
    largestPart = (data[0] >> 1) + 1;
    HTTP_FUN hooks{nullptr, LowerTheCount, nullptr};
    vagent::files::TransferChannel channel(1, (data[0] & 1) != 0 ? &hooks : nullptr);
    ReadFrames(channel);
    return 0;
}
