// Feeds arbitrary reply bytes to the task client's reply reader. The first
// byte chooses the task (and so the decoder and the output type), the second
// how the bytes arrive (in which pieces, through hooks or not); the rest is
// what the agent service answers.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "os/Sockets.h"
#include "vagent/FileRecords.h"
#include "vagent/PrinterRecords.h"
#include "vagent/SessionRecords.h"
#include "vagent/UserRecords.h"
#include "vagent/VPrivilege.h"
#include "vagent/VTaskClient.h"

namespace {

using vagent::os::SocketHandle;

// Only what the client calls is served; the listening side is refused.
constexpr std::uint32_t kNotSupportedHere = 10045;
constexpr SocketHandle kConnection = 5;
// How far an announced payload may run past the input and still be tried.
constexpr std::size_t kSlack = 64;

// A socket library whose only connection answers with the fuzz input.
class ReplySockets final : public vagent::os::Sockets {
public:
    ReplySockets(const std::uint8_t* reply, std::size_t size, int chunk, bool resetAtEnd)
        : reply_(reply), size_(size), chunk_(chunk), resetAtEnd_(resetAtEnd) {}

    std::uint32_t Startup() override { return 0; }
    void Cleanup() override {}
    std::uint32_t OpenStream(SocketHandle& socket) override {
        socket = kConnection;
        return 0;
    }
    std::uint32_t Connect(SocketHandle, const std::string&, std::uint16_t) override { return 0; }
    std::uint32_t Bind(SocketHandle, const std::string&, std::uint16_t) override {
        return kNotSupportedHere;
    }
    std::uint32_t Listen(SocketHandle, int) override { return kNotSupportedHere; }
    std::uint32_t Accept(SocketHandle, SocketHandle&) override { return kNotSupportedHere; }
    std::uint32_t LocalPort(SocketHandle, std::uint16_t&) override { return kNotSupportedHere; }
    std::uint32_t Send(SocketHandle, const void*, int count, int, int& sent) override {
        sent = count;
        return 0;
    }
    std::uint32_t Receive(SocketHandle, void* buffer, int count, int, int& received) override {
        received = 0;
        if (offset_ == size_) {
            return resetAtEnd_ ? std::uint32_t{vagent::os::kSocketConnectionReset} : 0u;
        }
        const std::size_t taken = std::min(
            {size_ - offset_, static_cast<std::size_t>(count), static_cast<std::size_t>(chunk_)});
        std::memcpy(buffer, reply_ + offset_, taken);
        offset_ += taken;
        received = static_cast<int>(taken);
        return 0;
    }
    std::uint32_t SetReceiveTimeout(SocketHandle, std::uint32_t) override { return 0; }
    std::uint32_t Shutdown(SocketHandle) override { return 0; }
    std::uint32_t Close(SocketHandle) override { return 0; }

private:
    const std::uint8_t* reply_;
    std::size_t size_;
    std::size_t offset_ = 0;
    int chunk_;
    bool resetAtEnd_;
};

// A hook that asks for a retry now and then and lets at most 3 bytes through
// at a time, so that reads continue in parts.
int retryTurn = 0;

int SmallPiecesBeforeRecv(std::uintptr_t, int* count) {
    if (++retryTurn % 3 == 0) {
        return 2;
    }
    *count = std::min(*count, 3);
    return 1;
}

int IgnoreAfterRecv(int) {
    return 0;
}

template <class Output>
void Read(VTaskClient& client, HTTP_FUN* hooks) {
    Output output{};
    client.GetTaskResult(&output, hooks);
}

void ReadPrivileges(VTaskClient& client, HTTP_FUN* hooks) {
    std::vector<VPrivilege*> privileges;
    client.GetTaskResult(&privileges, hooks);
    for (VPrivilege* privilege : privileges) {
        delete privilege;
    }
}

struct TaskReader {
    std::uint32_t taskId;
    void (*read)(VTaskClient&, HTTP_FUN*);
};

// Task 30 is left out: its decoder writes the files the reply names.
constexpr TaskReader kReaders[] = {
    {1, Read<std::vector<_VXUserInfoA>>},
    {2, Read<std::uint32_t>},
    {6, Read<std::vector<_VXUserGroupA>>},
    {13, ReadPrivileges},
    {14, Read<std::vector<_VXUserInfoA>>},
    {15, Read<std::uint32_t>},
    {20, Read<std::vector<std::string>>},
    {24, Read<int>},
    {26, Read<std::vector<_VXSessionA>>},
    {27, Read<std::vector<_VXPrinterA>>},
    {28, Read<std::vector<FileAttrA>>},
    {29, Read<std::vector<ExistAttr>>},
    {31, Read<std::string>},
    {32, Read<std::vector<std::string>>},
    {35, Read<int>},
    {37, Read<std::vector<std::string>>},
    {38, Read<int>},
    {39, Read<int>},
    {42, Read<std::vector<_VXUserInfoA>>},
    {44, Read<int>},
};

// A reply that announces more payload than the input holds only makes the
// client allocate the announced size and then fail its read, which the unit
// tests pin; at hundreds of megabytes a run it would starve the search.
bool ClaimsAPayloadBeyondTheInput(const std::uint8_t* reply, std::size_t size) {
    constexpr std::size_t kHeaderSize = 8;
    if (size < kHeaderSize) {
        return false;
    }
    const std::uint32_t claimed = (std::uint32_t{reply[4]} << 24) |
                                  (std::uint32_t{reply[5]} << 16) | (std::uint32_t{reply[6]} << 8) |
                                  std::uint32_t{reply[7]};
    return claimed > size - kHeaderSize + kSlack;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    if (ClaimsAPayloadBeyondTheInput(data + 2, size - 2)) {
        return 0;
    }
    const TaskReader& reader = kReaders[data[0] % (sizeof(kReaders) / sizeof(kReaders[0]))];
    const std::uint8_t mode = data[1];
    const bool throughHooks = (mode & 1) != 0;
    const bool resetAtEnd = (mode & 2) != 0;
    const int chunk = 1 + (mode >> 2);
    ReplySockets sockets(data + 2, size - 2, chunk, resetAtEnd);
    vagent::os::ScopedFacility<vagent::os::Sockets> scope(sockets);
    HTTP_FUN hooks{nullptr, SmallPiecesBeforeRecv, IgnoreAfterRecv};
    retryTurn = 0;
    VTaskClient client;
    client.SetServer("127.0.0.1", "1234");
    if (client.SetTask(reader.taskId) == 0 ||
        client.SendRequest(0, "", vagent::os::kInvalidSocket, nullptr) == 0) {
        return 0;
    }
    reader.read(client, throughHooks ? &hooks : nullptr);
    return 0;
}
