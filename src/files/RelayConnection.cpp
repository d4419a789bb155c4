#include "files/RelayConnection.h"

#include <cstdlib>

#include "vagent/ErrorCodes.h"
#include "vagent/DllLog.h"
#include "vagent/LdapRootSite.h"
#include "vagent/ResultEncoders.h"
#include "vagent/VByteStream.h"

namespace vagent::files {
namespace {

// The receive time limit of every connection to an agent service.
constexpr std::uint32_t kReceiveTimeLimit = 5000;
constexpr std::uint32_t kRequestStreamStep = 1024;

std::uint32_t NetworkOrder(std::uint32_t value) {
    const std::uint8_t bytes[4] = {
        static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
        static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

// The port's decimal value; what is not a digit counts as nothing.
std::uint16_t PortNumber(const std::string& port) {
    return static_cast<std::uint16_t>(std::atoi(port.c_str()));
}

bool BuildRequest(VByteStream& frame, std::uint32_t taskId, std::int32_t workEnv,
                  const std::uint8_t* block, std::uint32_t blockSize) {
    const std::string rootSite = GetLDAPRootSite();
    const auto rootLength = static_cast<std::uint32_t>(rootSite.size());
    return frame.PutDword(NetworkOrder(taskId)) != 0 &&
           frame.PutDword(NetworkOrder(static_cast<std::uint32_t>(workEnv))) != 0 &&
           frame.PutDword(NetworkOrder(rootLength)) != 0 &&
           frame.PutBytes(rootSite.data(), rootLength) != 0 &&
           frame.PutDword(NetworkOrder(blockSize)) != 0 && frame.PutBytes(block, blockSize) != 0;
}

}  // namespace

RelayConnection::RelayConnection()
    : sockets_(os::Installed<os::Sockets>()), startup_(sockets_.Startup()) {}

RelayConnection::~RelayConnection() {
    if (socket_ != os::kInvalidSocket) {
        sockets_.Shutdown(socket_);
        sockets_.Close(socket_);
    }
    if (startup_ == 0) {
        sockets_.Cleanup();
    }
}

std::uint32_t RelayConnection::Connect(const std::string& host, const std::string& port) {
    os::SocketHandle opened = os::kInvalidSocket;
    std::uint32_t status = sockets_.OpenStream(opened);
    if (status != 0) {
        DllLogPrintf("socket failed");
        DllLogPrintf("ConnectServer failed");
        return status;
    }
    status = sockets_.Connect(opened, host, PortNumber(port));
    if (status != 0) {
        DllLogPrintf("connect failed");
        sockets_.Close(opened);
        DllLogPrintf("ConnectServer failed");
        return status;
    }
    if (sockets_.SetReceiveTimeout(opened, kReceiveTimeLimit) != 0) {
        DllLogPrintf("setsockopt failed");
    }
    socket_ = opened;
    return 0;
}

std::uint32_t RelayConnection::SendRequest(const std::string& host, const std::string& port,
                                           std::uint32_t taskId, std::int32_t workEnv,
                                           const std::vector<std::string>& items) {
    if (startup_ != 0) {
        return startup_;
    }
    std::uint8_t* block = nullptr;
    std::uint32_t blockSize = 0;
    if (VecTStringToResult(items, block, blockSize) == 0) {
        return kErrorNotEnoughMemory;
    }
    std::uint32_t status = Connect(host, port);
    try {
        VByteStream frame(kRequestStreamStep, kRequestStreamStep);
        if (status == 0 && !BuildRequest(frame, taskId, workEnv, block, blockSize)) {
            status = kErrorNotEnoughMemory;
        }
        int sent = 0;
        if (status == 0) {
            status = sockets_.Send(socket_, frame.Data(), static_cast<int>(frame.Used()), 0, sent);
        }
        if (status == 0 && sent != static_cast<int>(frame.Used())) {
            status = kErrorNetReceiveData;
        }
        if (status != 0 && socket_ != os::kInvalidSocket) {
            DllLogPrintf("Send Data of Request failed");
        }
    } catch (...) {
        status = kErrorNotEnoughMemory;
    }
    delete[] block;
    return status;
}

}  // namespace vagent::files
