#include "platform/NameResolver.h"

#include "platform/win32/WindowsHeaders.h"

namespace vagentctl::platform {
namespace {

// Winsock is started for the lookup alone and stopped again: the library
// starts its own for the connections.
class WinsockScope {
public:
    WinsockScope() : started_(WSAStartup(MAKEWORD(2, 2), &data_) == 0) {}
    ~WinsockScope() {
        if (started_) {
            WSACleanup();
        }
    }
    WinsockScope(const WinsockScope&) = delete;
    WinsockScope& operator=(const WinsockScope&) = delete;
    bool Started() const { return started_; }

private:
    WSADATA data_{};
    bool started_;
};

}  // namespace

bool ResolveIpv4(const std::string& name, std::string& dotted, std::string& problem) {
    WinsockScope winsock;
    if (!winsock.Started()) {
        problem = "Winsock could not be started";
        return false;
    }
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int status = getaddrinfo(name.c_str(), nullptr, &hints, &found);
    if (status != 0 || found == nullptr) {
        problem = "no IPv4 address (error " + std::to_string(status) + ")";
        return false;
    }
    const auto* address = reinterpret_cast<const sockaddr_in*>(found->ai_addr);
    const unsigned char* octets = reinterpret_cast<const unsigned char*>(&address->sin_addr);
    dotted = std::to_string(octets[0]) + "." + std::to_string(octets[1]) + "." +
             std::to_string(octets[2]) + "." + std::to_string(octets[3]);
    freeaddrinfo(found);
    return true;
}

}  // namespace vagentctl::platform
