#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "os/Sockets.h"

// The loopback plumbing that the benchmark programs share: whole sends and
// receives on the system's sockets, and paths in the library's form.

namespace vagent::bench {

inline os::Sockets& Sockets() {
    return os::Installed<os::Sockets>();
}

inline std::string LibraryPath(const std::filesystem::path& path) {
    std::string text = path.string();
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

inline bool SendAll(os::SocketHandle socket, const char* data, std::size_t count) {
    while (count > 0) {
        int sent = 0;
        if (Sockets().Send(socket, data, static_cast<int>(count), 0, sent) != 0 || sent <= 0) {
            return false;
        }
        data += sent;
        count -= static_cast<std::size_t>(sent);
    }
    return true;
}

inline bool ReceiveAll(os::SocketHandle socket, char* buffer, std::size_t count) {
    while (count > 0) {
        int got = 0;
        if (Sockets().Receive(socket, buffer, static_cast<int>(count), 0, got) != 0 || got <= 0) {
            return false;
        }
        buffer += got;
        count -= static_cast<std::size_t>(got);
    }
    return true;
}

inline os::SocketHandle ConnectTo(std::uint16_t port) {
    os::SocketHandle socket = os::kInvalidSocket;
    if (Sockets().OpenStream(socket) != 0) {
        return os::kInvalidSocket;
    }
    if (Sockets().Connect(socket, "127.0.0.1", port) != 0) {
        Sockets().Close(socket);
        return os::kInvalidSocket;
    }
    return socket;
}

}  // namespace vagent::bench
