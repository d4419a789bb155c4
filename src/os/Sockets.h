#pragma once

#include <cstdint>
#include <string>

#include "os/Facilities.h"

namespace vagent::os {

// A socket as the system names it; kInvalidSocket (all bits set) when none.
using SocketHandle = std::uintptr_t;
constexpr SocketHandle kInvalidSocket = ~static_cast<SocketHandle>(0);

// Windows Sockets statuses the portable code and the POSIX implementation
// need by number.
enum SocketStatus : std::uint32_t {
    kSocketInterrupted = 10004,
    kSocketInvalidArgument = 10022,
    kSocketNotConnected = 10057,
    kSocketShutDown = 10058,
    kSocketConnectionReset = 10054,
    kSocketAddressInUse = 10048,
    kSocketTimedOut = 10060,
    kSocketConnectionRefused = 10061,
    kSocketNotStarted = 10093,
};

// TCP over IPv4. Every call returns 0 or the failure status (the value
// WSAGetLastError gives after it).
class Sockets {
public:
    virtual ~Sockets() = default;
    // Mirrors WSAStartup asking for version 2.2; each start is matched by one
    // Cleanup.
    virtual std::uint32_t Startup() = 0;
    // Mirrors WSACleanup.
    virtual void Cleanup() = 0;
    // Mirrors socket(AF_INET, SOCK_STREAM, IPPROTO_TCP).
    virtual std::uint32_t OpenStream(SocketHandle& socket) = 0;
    // Mirrors connect to an IPv4 address given in dotted text (parsed, never
    // resolved) and a port.
    virtual std::uint32_t Connect(SocketHandle socket, const std::string& address,
                                  std::uint16_t port) = 0;
    // Mirrors bind to an IPv4 address in dotted text and a port (0 lets the
    // system choose).
    virtual std::uint32_t Bind(SocketHandle socket, const std::string& address,
                               std::uint16_t port) = 0;
    // Mirrors listen.
    virtual std::uint32_t Listen(SocketHandle socket, int backlog) = 0;
    // Mirrors accept.
    virtual std::uint32_t Accept(SocketHandle listener, SocketHandle& accepted) = 0;
    // Mirrors getsockname: the port the socket is bound to.
    virtual std::uint32_t LocalPort(SocketHandle socket, std::uint16_t& port) = 0;
    // Mirrors send: sent receives the count that went out.
    virtual std::uint32_t Send(SocketHandle socket, const void* data, int count, int flags,
                               int& sent) = 0;
    // Mirrors recv: received is the count that arrived, 0 when the peer has
    // closed its side.
    virtual std::uint32_t Receive(SocketHandle socket, void* buffer, int count, int flags,
                                  int& received) = 0;
    // Mirrors setsockopt(SOL_SOCKET, SO_RCVTIMEO) with a 4-byte millisecond
    // value: a receive that waits longer fails with 10060.
    virtual std::uint32_t SetReceiveTimeout(SocketHandle socket, std::uint32_t milliseconds) = 0;
    // Mirrors shutdown in both directions.
    virtual std::uint32_t Shutdown(SocketHandle socket) = 0;
    // Mirrors closesocket.
    virtual std::uint32_t Close(SocketHandle socket) = 0;
};

template <>
Sockets& RealFacility<Sockets>();

}  // namespace vagent::os
