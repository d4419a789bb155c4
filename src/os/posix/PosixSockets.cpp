#include "os/posix/PosixSockets.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>

#include "os/Status.h"

namespace vagent::os {
namespace {

int AsDescriptor(SocketHandle socket) {
    return static_cast<int>(socket);
}

// The Windows Sockets status of a POSIX error number.
std::uint32_t StatusOf(int error) {
    switch (error) {
        case EAGAIN:
            return kSocketTimedOut;
        case ECONNREFUSED:
            return kSocketConnectionRefused;
        case ECONNRESET:
        case EPIPE:
            return kSocketConnectionReset;
        case ENOTCONN:
            return kSocketNotConnected;
        case EADDRINUSE:
            return kSocketAddressInUse;
        case EINTR:
            return kSocketInterrupted;
        case ENOMEM:
        case ENOBUFS:
            return kNotEnoughMemory;
        default:
            return kSocketInvalidArgument;
    }
}

std::uint32_t StatusOfResult(int result) {
    return result == 0 ? 0 : StatusOf(errno);
}

sockaddr_in AddressOf(const std::string& address, std::uint16_t port) {
    sockaddr_in where{};
    where.sin_family = AF_INET;
    where.sin_port = htons(port);
    where.sin_addr.s_addr = inet_addr(address.c_str());
    return where;
}

}  // namespace

std::uint32_t PosixSockets::Startup() {
    return 0;
}

void PosixSockets::Cleanup() {}

std::uint32_t PosixSockets::OpenStream(SocketHandle& socket) {
    const int opened = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP);
    if (opened < 0) {
        socket = kInvalidSocket;
        return StatusOf(errno);
    }
    socket = static_cast<SocketHandle>(opened);
    return 0;
}

std::uint32_t PosixSockets::Connect(SocketHandle socket, const std::string& address,
                                    std::uint16_t port) {
    const sockaddr_in where = AddressOf(address, port);
    return StatusOfResult(
        ::connect(AsDescriptor(socket), reinterpret_cast<const sockaddr*>(&where), sizeof where));
}

std::uint32_t PosixSockets::Bind(SocketHandle socket, const std::string& address,
                                 std::uint16_t port) {
    const sockaddr_in where = AddressOf(address, port);
    return StatusOfResult(
        ::bind(AsDescriptor(socket), reinterpret_cast<const sockaddr*>(&where), sizeof where));
}

std::uint32_t PosixSockets::Listen(SocketHandle socket, int backlog) {
    return StatusOfResult(::listen(AsDescriptor(socket), backlog));
}

std::uint32_t PosixSockets::Accept(SocketHandle listener, SocketHandle& accepted) {
    const int taken = ::accept4(AsDescriptor(listener), nullptr, nullptr, SOCK_CLOEXEC);
    if (taken < 0) {
        accepted = kInvalidSocket;
        return StatusOf(errno);
    }
    accepted = static_cast<SocketHandle>(taken);
    return 0;
}

std::uint32_t PosixSockets::LocalPort(SocketHandle socket, std::uint16_t& port) {
    sockaddr_in where{};
    socklen_t size = sizeof where;
    if (::getsockname(AsDescriptor(socket), reinterpret_cast<sockaddr*>(&where), &size) != 0) {
        return StatusOf(errno);
    }
    port = ntohs(where.sin_port);
    return 0;
}

// A peer that has gone must fail the send, not end the process with SIGPIPE.
std::uint32_t PosixSockets::Send(SocketHandle socket, const void* data, int count, int flags,
                                 int& sent) {
    const ssize_t result =
        ::send(AsDescriptor(socket), data, static_cast<std::size_t>(count), flags | MSG_NOSIGNAL);
    if (result < 0) {
        sent = 0;
        return StatusOf(errno);
    }
    sent = static_cast<int>(result);
    return 0;
}

std::uint32_t PosixSockets::Receive(SocketHandle socket, void* buffer, int count, int flags,
                                    int& received) {
    const ssize_t result =
        ::recv(AsDescriptor(socket), buffer, static_cast<std::size_t>(count), flags);
    if (result < 0) {
        received = 0;
        return StatusOf(errno);
    }
    received = static_cast<int>(result);
    return 0;
}

std::uint32_t PosixSockets::SetReceiveTimeout(SocketHandle socket, std::uint32_t milliseconds) {
    timeval limit{};
    limit.tv_sec = static_cast<time_t>(milliseconds / 1000);
    limit.tv_usec = static_cast<suseconds_t>((milliseconds % 1000) * 1000);
    return StatusOfResult(
        ::setsockopt(AsDescriptor(socket), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit));
}

std::uint32_t PosixSockets::Shutdown(SocketHandle socket) {
    return StatusOfResult(::shutdown(AsDescriptor(socket), SHUT_RDWR));
}

std::uint32_t PosixSockets::Close(SocketHandle socket) {
    return StatusOfResult(::close(AsDescriptor(socket)));
}

template <>
Sockets& RealFacility<Sockets>() {
    static PosixSockets real;
    return real;
}

}  // namespace vagent::os
