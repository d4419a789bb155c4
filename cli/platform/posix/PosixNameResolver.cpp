#include "platform/NameResolver.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace vagentctl::platform {

bool ResolveIpv4(const std::string& name, std::string& dotted, std::string& problem) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int status = getaddrinfo(name.c_str(), nullptr, &hints, &found);
    if (status != 0 || found == nullptr) {
        problem = gai_strerror(status);
        return false;
    }
    char text[INET_ADDRSTRLEN] = {};
    const auto* address = reinterpret_cast<const sockaddr_in*>(found->ai_addr);
    inet_ntop(AF_INET, &address->sin_addr, text, sizeof text);
    freeaddrinfo(found);
    dotted = text;
    return true;
}

}  // namespace vagentctl::platform
