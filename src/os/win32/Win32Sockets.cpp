#include "os/win32/Win32Sockets.h"

#include "os/win32/WindowsHeaders.h"

namespace vagent::os {
namespace {

SOCKET AsSocket(SocketHandle socket) {
    return static_cast<SOCKET>(socket);
}

std::uint32_t LastSocketStatus() {
    return static_cast<std::uint32_t>(WSAGetLastError());
}

std::uint32_t StatusOf(int result) {
    return result == SOCKET_ERROR ? LastSocketStatus() : 0;
}

sockaddr_in AddressOf(const std::string& address, std::uint16_t port) {
    sockaddr_in where{};
    where.sin_family = AF_INET;
    where.sin_port = htons(port);
    where.sin_addr.s_addr = inet_addr(address.c_str());
    return where;
}

}  // namespace

std::uint32_t Win32Sockets::Startup() {
    WSADATA data{};
    return static_cast<std::uint32_t>(WSAStartup(MAKEWORD(2, 2), &data));
}

void Win32Sockets::Cleanup() {
    WSACleanup();
}

std::uint32_t Win32Sockets::OpenStream(SocketHandle& socket) {
    const SOCKET opened = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    if (opened == INVALID_SOCKET) {
        socket = kInvalidSocket;
        return LastSocketStatus();
    }
    socket = static_cast<SocketHandle>(opened);
    return 0;
}

std::uint32_t Win32Sockets::Connect(SocketHandle socket, const std::string& address,
                                    std::uint16_t port) {
    const sockaddr_in where = AddressOf(address, port);
    return StatusOf(
        ::connect(AsSocket(socket), reinterpret_cast<const sockaddr*>(&where), sizeof where));
}

std::uint32_t Win32Sockets::Bind(SocketHandle socket, const std::string& address,
                                 std::uint16_t port) {
    const sockaddr_in where = AddressOf(address, port);
    return StatusOf(
        ::bind(AsSocket(socket), reinterpret_cast<const sockaddr*>(&where), sizeof where));
}

std::uint32_t Win32Sockets::Listen(SocketHandle socket, int backlog) {
    return StatusOf(::listen(AsSocket(socket), backlog));
}

std::uint32_t Win32Sockets::Accept(SocketHandle listener, SocketHandle& accepted) {
    const SOCKET taken = ::accept(AsSocket(listener), nullptr, nullptr);
    if (taken == INVALID_SOCKET) {
        accepted = kInvalidSocket;
        return LastSocketStatus();
    }
    accepted = static_cast<SocketHandle>(taken);
    return 0;
}

std::uint32_t Win32Sockets::LocalPort(SocketHandle socket, std::uint16_t& port) {
    sockaddr_in where{};
    int size = sizeof where;
    if (::getsockname(AsSocket(socket), reinterpret_cast<sockaddr*>(&where), &size) != 0) {
        return LastSocketStatus();
    }
    port = ntohs(where.sin_port);
    return 0;
}

std::uint32_t Win32Sockets::Send(SocketHandle socket, const void* data, int count, int flags,
                                 int& sent) {
    sent = ::send(AsSocket(socket), static_cast<const char*>(data), count, flags);
    if (sent == SOCKET_ERROR) {
        sent = 0;
        return LastSocketStatus();
    }
    return 0;
}

std::uint32_t Win32Sockets::Receive(SocketHandle socket, void* buffer, int count, int flags,
                                    int& received) {
    received = ::recv(AsSocket(socket), static_cast<char*>(buffer), count, flags);
    if (received == SOCKET_ERROR) {
        received = 0;
        return LastSocketStatus();
    }
    return 0;
}

std::uint32_t Win32Sockets::SetReceiveTimeout(SocketHandle socket, std::uint32_t milliseconds) {
    const DWORD value = milliseconds;
    return StatusOf(::setsockopt(AsSocket(socket), SOL_SOCKET, SO_RCVTIMEO,
                                 reinterpret_cast<const char*>(&value), sizeof value));
}

std::uint32_t Win32Sockets::Shutdown(SocketHandle socket) {
    return StatusOf(::shutdown(AsSocket(socket), SD_BOTH));
}

std::uint32_t Win32Sockets::Close(SocketHandle socket) {
    return StatusOf(::closesocket(AsSocket(socket)));
}

template <>
Sockets& RealFacility<Sockets>() {
    static Win32Sockets real;
    return real;
}

}  // namespace vagent::os
