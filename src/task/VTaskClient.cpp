#include "vagent/VTaskClient.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "os/Sockets.h"
#include "task/ByteOrder.h"
#include "vagent/DllLog.h"
#include "vagent/ErrorCodes.h"
#include "vagent/TaskFactory.h"
#include "vagent/VByteStream.h"
#include "vagent/VStreamException.h"
#include "vagent/VTask.h"

namespace {

using vagent::os::Installed;
using vagent::os::kInvalidSocket;
using vagent::os::SocketHandle;
using vagent::os::Sockets;

constexpr std::uint32_t kFrameStreamStep = 1024;
constexpr std::uint32_t kReceiveTimeLimit = 5000;
constexpr std::int32_t kHeaderWordSize = 4;
// The header reads place a continuation at four times the bytes already
// received; this scratch space keeps every such placement in bounds.
constexpr std::int32_t kHeaderScratchSize = 16;
constexpr std::int32_t kHeaderStride = 4;
constexpr std::int32_t kPayloadStride = 1;
// A reply payload announced larger than this is refused as one that cannot
// be allocated: the length comes from the network, and a 32-bit host could
// not hold much more anyway.
constexpr std::int32_t kLargestReplyPayload = 256 * 1024 * 1024;
// The socket library's "call was cancelled" status, for a send that the
// caller's hook refused.
constexpr std::uint32_t kSocketCancelled = 10103;
constexpr int kHookFails = 0;
constexpr int kHookRetries = 2;

Sockets& SocketLibrary() {
    return Installed<Sockets>();
}

// The value whose little-endian bytes, as the byte stream writes them, are
// value's bytes in network order, whatever the host's own order.
std::uint32_t NetworkOrder(std::uint32_t value) {
    std::uint8_t bytes[4];
    vagent::WriteBigEndian32(bytes, value);
    return vagent::ReadLittleEndian32(bytes);
}

// The port text's decimal value; what is not a digit counts as nothing.
int PortNumber(const std::string& port) {
    return std::atoi(port.c_str());
}

bool PutNetworkWord(VByteStream& frame, std::uint32_t value) {
    return frame.PutDword(NetworkOrder(value)) != 0;
}

// Task id, work environment, root site and the first queued block (or an
// empty one), every integer in network order.
bool BuildFrame(VByteStream& frame, std::uint32_t taskId, std::int32_t workEnv,
                const std::string& rootSite, const REQUEST_DATA* block) {
    const auto rootLength = static_cast<std::uint32_t>(rootSite.size());
    const std::uint32_t blockLength =
        block != nullptr ? static_cast<std::uint32_t>(block->length) : 0;
    return PutNetworkWord(frame, taskId) &&
           PutNetworkWord(frame, static_cast<std::uint32_t>(workEnv)) &&
           PutNetworkWord(frame, rootLength) && frame.PutBytes(rootSite.data(), rootLength) != 0 &&
           PutNetworkWord(frame, blockLength) &&
           (blockLength == 0 || frame.PutBytes(block->data, blockLength) != 0);
}

// Asks the hook how much to receive until it stops asking to be called
// again; false when it fails the receive.
bool AskBeforeReceive(HTTP_FUN* callbacks, SocketHandle socket, std::int32_t& wanted) {
    if (callbacks->pfnBeforeRecv == nullptr) {
        return true;
    }
    int count = wanted;
    int answer = kHookRetries;
    while (answer == kHookRetries) {
        answer = callbacks->pfnBeforeRecv(socket, &count);
    }
    wanted = count;
    return answer != kHookFails;
}

}  // namespace

VTaskClient::VTaskClient() : startup_(SocketLibrary().Startup()) {}

VTaskClient::~VTaskClient() {
    delete task_;
    ReleaseRequests();
    if (connection_ != kInvalidSocket) {
        SocketLibrary().Shutdown(connection_);
        SocketLibrary().Close(connection_);
    }
    if (startup_ == 0) {
        SocketLibrary().Cleanup();
    }
}

void VTaskClient::ReleaseRequests() {
    for (REQUEST_DATA* request : requests_) {
        delete[] request->data;
        delete request;
    }
    requests_.clear();
}

int VTaskClient::SetServer(const char* host, const char* port) {
    host_ = host;
    port_ = port;
    return 1;
}

int VTaskClient::SetTask(std::uint32_t taskId) {
    if (taskId == taskId_) {
        return 1;
    }
    VTask* task = CreateVTask(taskId);
    if (task == nullptr) {
        DllLogPrintf("CreateVTask failed");
        return 0;
    }
    ReleaseRequests();
    delete task_;
    task_ = task;
    taskId_ = taskId;
    return 1;
}

int VTaskClient::AddRequest(const std::uint8_t* data, std::int32_t length) {
    if (data == nullptr || length < 1) {
        DllLogPrintf("AddRequest Parameter error");
        return 0;
    }
    auto* request = new (std::nothrow) REQUEST_DATA{nullptr, length};
    if (request == nullptr) {
        DllLogPrintf("AddRequest : new REQUEST_DATA failed");
        return 0;
    }
    request->data = new (std::nothrow) std::uint8_t[static_cast<std::size_t>(length)];
    if (request->data == nullptr) {
        DllLogPrintf("AddRequest : new [%d] bytes failed", length);
        delete request;
        return 0;
    }
    std::memcpy(request->data, data, static_cast<std::size_t>(length));
    try {
        requests_.push_back(request);
    } catch (const std::bad_alloc&) {
        DllLogPrintf("AddRequest : new REQUEST_DATA failed");
        delete[] request->data;
        delete request;
        return 0;
    }
    return 1;
}

int VTaskClient::SendRequest(std::int32_t workEnv, const std::string& rootSite,
                             std::uintptr_t connection, HTTP_FUN* callbacks) {
    lastStatus_ = 0;
    try {
        VByteStream frame(kFrameStreamStep, kFrameStreamStep);
        const REQUEST_DATA* block = requests_.empty() ? nullptr : requests_.front();
        if (!BuildFrame(frame, taskId_, workEnv, rootSite, block)) {
            lastStatus_ = vagent::kErrorNotEnoughMemory;
            return 0;
        }
        return SendFrame(frame.Data(), static_cast<std::int32_t>(frame.Used()), connection,
                         callbacks);
    } catch (const VStreamException&) {
        lastStatus_ = vagent::kErrorNotEnoughMemory;
        return 0;
    }
}

// A socket opened here and not recorded (refused or short send) is left
// open: only a recorded connection is closed by the destructor.
int VTaskClient::SendFrame(const std::uint8_t* frame, std::int32_t length,
                           std::uintptr_t connection, HTTP_FUN* callbacks) {
    SocketHandle socket = connection;
    if (connection == kInvalidSocket) {
        socket = OpenConnection(host_, PortNumber(port_), lastStatus_);
        if (socket == kInvalidSocket) {
            DllLogPrintf("ConnectServer failed");
            return 0;
        }
    }
    if (callbacks != nullptr && callbacks->pfnBeforeSend != nullptr &&
        callbacks->pfnBeforeSend(connection, length) == 0) {
        lastStatus_ = kSocketCancelled;
        return 0;
    }
    int sent = 0;
    const std::uint32_t status = SocketLibrary().Send(socket, frame, length, 0, sent);
    if (status != 0 || sent != length) {
        DllLogPrintf("Send Data of Request failed");
        lastStatus_ = status != 0 ? status : vagent::kErrorNetReceiveData;
        return 0;
    }
    connection_ = socket;
    return 1;
}

std::uintptr_t VTaskClient::ConnectServer(std::string host, int port) {
    std::uint32_t status = 0;
    return OpenConnection(host, port, status);
}

std::uintptr_t VTaskClient::OpenConnection(const std::string& host, int port,
                                           std::uint32_t& status) {
    Sockets& sockets = SocketLibrary();
    SocketHandle socket = kInvalidSocket;
    status = sockets.OpenStream(socket);
    if (status != 0) {
        DllLogPrintf("socket failed");
        return kInvalidSocket;
    }
    status = sockets.Connect(socket, host, static_cast<std::uint16_t>(port));
    if (status != 0) {
        DllLogPrintf("connect failed");
        sockets.Close(socket);
        return kInvalidSocket;
    }
    if (sockets.SetReceiveTimeout(socket, kReceiveTimeLimit) != 0) {
        DllLogPrintf("setsockopt failed");
    }
    return socket;
}

// The limit is not used: the socket's own receive time limit, set when the
// connection was opened, is what ends a silent wait.
int VTaskClient::RecvAll(std::uintptr_t socket, std::uint8_t* buffer, std::int32_t length,
                         int flags, unsigned limit) {
    static_cast<void>(limit);
    std::uint32_t status = 0;
    return ReceiveExactly(socket, buffer, length, flags, status) ? 1 : 0;
}

bool VTaskClient::ReceiveExactly(std::uintptr_t socket, std::uint8_t* buffer, std::int32_t length,
                                 int flags, std::uint32_t& status) {
    std::int32_t received = 0;
    while (received < length) {
        int count = 0;
        status =
            SocketLibrary().Receive(socket, buffer + received, length - received, flags, count);
        if (status != 0 || count <= 0) {
            if (status == 0) {
                status = vagent::kErrorNetReceiveData;
            }
            return false;
        }
        received += count;
    }
    return true;
}

bool VTaskClient::ReceivePiecewise(HTTP_FUN* callbacks, std::uint8_t* buffer, std::int32_t length,
                                   std::int32_t stride, std::uint32_t& status) const {
    if (callbacks == nullptr) {
        return ReceiveExactly(connection_, buffer, length, 0, status);
    }
    std::int32_t received = 0;
    while (received < length) {
        std::int32_t wanted = length - received;
        if (!AskBeforeReceive(callbacks, connection_, wanted)) {
            status = vagent::kErrorNetReceiveData;
            return false;
        }
        // A hook may only lower the count; one that asks for nothing would
        // never finish.
        if (wanted < 1) {
            status = vagent::os::kSocketInvalidArgument;
            return false;
        }
        if (wanted > length - received) {
            wanted = length - received;
        }
        if (!ReceiveExactly(connection_, buffer + received * stride, wanted, 0, status)) {
            return false;
        }
        if (callbacks->pfnAfterRecv != nullptr) {
            callbacks->pfnAfterRecv(wanted);
        }
        received += wanted;
    }
    return true;
}

bool VTaskClient::ReceiveHeaderWord(HTTP_FUN* callbacks, std::uint8_t (&word)[4],
                                    std::uint32_t& status) const {
    std::uint8_t scratch[kHeaderScratchSize] = {};
    if (!ReceivePiecewise(callbacks, scratch, kHeaderWordSize, kHeaderStride, status)) {
        return false;
    }
    std::memcpy(word, scratch, sizeof(word));
    return true;
}

std::uint32_t VTaskClient::GetTaskResult(void* output, HTTP_FUN* callbacks) {
    if (task_ == nullptr) {
        return vagent::kErrorInvalidParameter;
    }
    std::uint32_t status = 0;
    std::uint8_t word[4] = {};
    if (!ReceiveHeaderWord(callbacks, word, status)) {
        return status;
    }
    // The service writes its status in the client's own (little-endian)
    // order, so it is read as such rather than swapped.
    const std::uint32_t serviceStatus = vagent::ReadLittleEndian32(word);
    if (serviceStatus != 0) {
        return serviceStatus;
    }
    if (!ReceiveHeaderWord(callbacks, word, status)) {
        return status;
    }
    const auto length = static_cast<std::int32_t>(vagent::ReadBigEndian32(word));
    if (length < 1) {
        DllLogPrintf("Data Len Error : %d", length);
        return vagent::kErrorNetReceiveDataLength;
    }
    return ReceiveAndDecodePayload(length, output, callbacks);
}

std::uint32_t VTaskClient::ReceiveAndDecodePayload(std::int32_t length, void* output,
                                                   HTTP_FUN* callbacks) {
    std::uint8_t* payload = nullptr;
    if (length <= kLargestReplyPayload) {
        payload = new (std::nothrow) std::uint8_t[static_cast<std::size_t>(length)];
    }
    if (payload == nullptr) {
        DllLogPrintf("GetTaskResult : new [%d] bytes failed", length);
        return vagent::kErrorNotEnoughMemory;
    }
    std::uint32_t status = 0;
    if (!ReceivePiecewise(callbacks, payload, length, kPayloadStride, status)) {
        delete[] payload;
        return status;
    }
    int decoded = 0;
    try {
        decoded = task_->Result2Struct(payload, static_cast<std::uint32_t>(length), output);
    } catch (const std::bad_alloc&) {
        delete[] payload;
        return vagent::kErrorNotEnoughMemory;
    }
    delete[] payload;
    return decoded != 0 ? 0 : task_->GetErrorCode();
}
