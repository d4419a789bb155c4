#include "platform/ServiceSockets.h"

#include "os/win32/WindowsHeaders.h"

namespace vagent::service::platform {
namespace {

SOCKET AsSocket(os::SocketHandle socket) {
    return static_cast<SOCKET>(socket);
}

std::uint32_t LastStatus() {
    return static_cast<std::uint32_t>(WSAGetLastError());
}

std::uint32_t StatusOf(int result) {
    return result == SOCKET_ERROR ? LastStatus() : 0;
}

}  // namespace

std::uint32_t WaitUntilReadable(std::vector<WaitEntry>& entries, int timeoutMilliseconds,
                                int& count) {
    std::vector<WSAPOLLFD> polled(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        polled[i].fd = AsSocket(entries[i].socket);
        polled[i].events = POLLRDNORM;
    }
    count = WSAPoll(polled.data(), static_cast<ULONG>(polled.size()), timeoutMilliseconds);
    if (count == SOCKET_ERROR) {
        count = 0;
        return LastStatus();
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        entries[i].ready = (polled[i].revents & (POLLRDNORM | POLLHUP | POLLERR | POLLNVAL)) != 0;
    }
    return 0;
}

// The accepted socket takes the listener's non-blocking mode, and Windows
// sockets are not inherited unless asked for.
std::uint32_t AcceptPeer(os::SocketHandle listener, os::SocketHandle& accepted,
                         std::uint32_t& peerAddress, std::uint16_t& peerPort) {
    sockaddr_in peer{};
    int size = sizeof peer;
    const SOCKET taken = ::accept(AsSocket(listener), reinterpret_cast<sockaddr*>(&peer), &size);
    if (taken == INVALID_SOCKET) {
        accepted = os::kInvalidSocket;
        return LastStatus();
    }
    accepted = static_cast<os::SocketHandle>(taken);
    peerAddress = ntohl(peer.sin_addr.s_addr);
    peerPort = ntohs(peer.sin_port);
    return SetNonBlocking(accepted, true);
}

std::uint32_t WouldBlockStatus() {
    return WSAEWOULDBLOCK;
}

std::uint32_t SetNonBlocking(os::SocketHandle socket, bool nonBlocking) {
    u_long mode = nonBlocking ? 1 : 0;
    return StatusOf(ioctlsocket(AsSocket(socket), FIONBIO, &mode));
}

std::uint32_t SetSendTimeout(os::SocketHandle socket, std::uint32_t milliseconds) {
    const DWORD limit = milliseconds;
    return StatusOf(setsockopt(AsSocket(socket), SOL_SOCKET, SO_SNDTIMEO,
                               reinterpret_cast<const char*>(&limit), sizeof limit));
}

std::uint32_t AllowAddressReuse(os::SocketHandle) {
    return 0;
}

ReadResult ReceiveAvailable(os::SocketHandle socket, std::uint8_t* buffer, std::size_t count,
                            std::size_t& received) {
    received = 0;
    const int wanted = count > 0x7FFFFFFF ? 0x7FFFFFFF : static_cast<int>(count);
    const int result = ::recv(AsSocket(socket), reinterpret_cast<char*>(buffer), wanted, 0);
    if (result > 0) {
        received = static_cast<std::size_t>(result);
        return ReadResult::Data;
    }
    if (result == 0) {
        return ReadResult::Closed;
    }
    return WSAGetLastError() == WSAEWOULDBLOCK ? ReadResult::WouldBlock : ReadResult::Failed;
}

std::uint64_t RaiseOpenFileLimit() {
    return 0;
}

}  // namespace vagent::service::platform
