#pragma once

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "files/Loopback.h"
#include "os/Sockets.h"
#include "vagent/VFileTask.h"

namespace vagent::test {

using Bytes = std::vector<std::uint8_t>;

// File contents that differ from byte to byte and from seed to seed.
std::string Pattern(std::size_t size, unsigned seed);

// A frame as it travels: its length, then size, attributes, block size, the
// name's length with its zero, and the name.
Bytes Frame(std::uint32_t size, std::uint32_t attributes, std::uint32_t blockSize,
            const std::string& name);

// Every byte that arrives until the peer closes or a receive fails.
Bytes ReadUntilClosed(os::SocketHandle socket);

// Sends every byte; a short send is a test failure.
void SendRaw(os::SocketHandle socket, const Bytes& bytes);

// Runs send on its own thread with a transfer task against the pair's client
// side, closes that side when done, and gives what the sender returned.
template <typename Send>
std::thread SenderThread(LoopbackPair& pair, int& sent, Send send) {
    return std::thread([&pair, &sent, send] {
        VFileTask sender(44);
        sent = send(sender, pair.Client());
        pair.CloseClient();
    });
}

}  // namespace vagent::test
