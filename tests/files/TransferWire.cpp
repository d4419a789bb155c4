#include "files/TransferWire.h"

#include <gtest/gtest.h>

namespace vagent::test {
namespace {

void AppendLittleEndian(Bytes& bytes, std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

os::Sockets& Sockets() {
    return os::Installed<os::Sockets>();
}

}  // namespace

std::string Pattern(std::size_t size, unsigned seed) {
    std::string text(size, '\0');
    for (std::size_t index = 0; index < size; ++index) {
        text[index] = static_cast<char>((index * 131 + seed * 7 + index / 251) & 0xFF);
    }
    return text;
}

Bytes Frame(std::uint32_t size, std::uint32_t attributes, std::uint32_t blockSize,
            const std::string& name) {
    Bytes bytes;
    AppendLittleEndian(bytes, static_cast<std::uint32_t>(16 + name.size() + 1));
    AppendLittleEndian(bytes, size);
    AppendLittleEndian(bytes, attributes);
    AppendLittleEndian(bytes, blockSize);
    AppendLittleEndian(bytes, static_cast<std::uint32_t>(name.size() + 1));
    bytes.insert(bytes.end(), name.begin(), name.end());
    bytes.push_back(0);
    return bytes;
}

Bytes ReadUntilClosed(os::SocketHandle socket) {
    Bytes bytes;
    std::uint8_t buffer[4096];
    for (;;) {
        int got = 0;
        if (Sockets().Receive(socket, buffer, sizeof buffer, 0, got) != 0 || got <= 0) {
            return bytes;
        }
        bytes.insert(bytes.end(), buffer, buffer + got);
    }
}

void SendRaw(os::SocketHandle socket, const Bytes& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        int sent = 0;
        ASSERT_EQ(Sockets().Send(socket, bytes.data() + done, static_cast<int>(bytes.size() - done),
                                 0, sent),
                  0u);
        ASSERT_GT(sent, 0);
        done += static_cast<std::size_t>(sent);
    }
}

}  // namespace vagent::test
