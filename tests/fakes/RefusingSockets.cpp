#include "fakes/RefusingSockets.h"

namespace vagent::test {

std::uint32_t RefusingSockets::Refuse() {
    ++refused;
    return kRefused;
}

std::uint32_t RefusingSockets::Startup() {
    return Refuse();
}

void RefusingSockets::Cleanup() {
    Refuse();
}

std::uint32_t RefusingSockets::OpenStream(os::SocketHandle& socket) {
    socket = os::kInvalidSocket;
    return Refuse();
}

std::uint32_t RefusingSockets::Connect(os::SocketHandle, const std::string&, std::uint16_t) {
    return Refuse();
}

std::uint32_t RefusingSockets::Bind(os::SocketHandle, const std::string&, std::uint16_t) {
    return Refuse();
}

std::uint32_t RefusingSockets::Listen(os::SocketHandle, int) {
    return Refuse();
}

std::uint32_t RefusingSockets::Accept(os::SocketHandle, os::SocketHandle& accepted) {
    accepted = os::kInvalidSocket;
    return Refuse();
}

std::uint32_t RefusingSockets::LocalPort(os::SocketHandle, std::uint16_t& port) {
    port = 0;
    return Refuse();
}

std::uint32_t RefusingSockets::Send(os::SocketHandle, const void*, int, int, int& sent) {
    sent = 0;
    return Refuse();
}

std::uint32_t RefusingSockets::Receive(os::SocketHandle, void*, int, int, int& received) {
    received = 0;
    return Refuse();
}

std::uint32_t RefusingSockets::SetReceiveTimeout(os::SocketHandle, std::uint32_t) {
    return Refuse();
}

std::uint32_t RefusingSockets::Shutdown(os::SocketHandle) {
    return Refuse();
}

std::uint32_t RefusingSockets::Close(os::SocketHandle) {
    return Refuse();
}

}  // namespace vagent::test
