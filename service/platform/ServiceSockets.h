#pragma once

#include <cstdint>
#include <vector>

#include "os/Sockets.h"

namespace vagent::service::platform {

// The socket calls of the serving loop that the library's own Sockets
// facility does not make: waiting on many sockets at once, non-blocking
// accepts and reads, and the limits a long-running service needs. Every
// call returns 0 or the Windows Sockets status of its failure.

// One socket to wait on; ready is set when it has bytes, has been closed by
// its peer or has failed, so that a read will not block.
struct WaitEntry {
    os::SocketHandle socket = os::kInvalidSocket;
    bool ready = false;
};

// How a read from a non-blocking socket ended.
enum class ReadResult { Data, Closed, WouldBlock, Failed };

// Mirrors poll / WSAPoll for readability with a time limit; count receives
// the number of entries made ready.
std::uint32_t WaitUntilReadable(std::vector<WaitEntry>& entries, int timeoutMilliseconds,
                                int& count);
// Mirrors accept, handing out the peer's IPv4 address (host order) and port;
// the accepted socket does not block and is not inherited by child programs.
// A listener with nothing waiting fails with WouldBlockStatus().
std::uint32_t AcceptPeer(os::SocketHandle listener, os::SocketHandle& accepted,
                         std::uint32_t& peerAddress, std::uint16_t& peerPort);
std::uint32_t WouldBlockStatus();
// Mirrors FIONBIO / O_NONBLOCK.
std::uint32_t SetNonBlocking(os::SocketHandle socket, bool nonBlocking);
// Mirrors setsockopt(SO_SNDTIMEO): a send that waits longer fails.
std::uint32_t SetSendTimeout(os::SocketHandle socket, std::uint32_t milliseconds);
// Lets a restarted service bind its port again while old connections of
// the previous run linger (SO_REUSEADDR on POSIX; nothing on Windows, where
// that option would let another program take the port).
std::uint32_t AllowAddressReuse(os::SocketHandle socket);
// Mirrors recv on a non-blocking socket.
ReadResult ReceiveAvailable(os::SocketHandle socket, std::uint8_t* buffer, std::size_t count,
                            std::size_t& received);
// Raises the open-file soft limit to the hard limit where the system has
// one, so that many idle connections fit; the limit in force afterwards
// (0 where the system sets none).
std::uint64_t RaiseOpenFileLimit();

}  // namespace vagent::service::platform
