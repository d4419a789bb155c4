#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vagent::service {

// The client addresses the service answers: a list of IPv4 networks written
// as CIDR ("127.0.0.0/8", "10.1.2.3/32", "0.0.0.0/0"; a bare address means
// /32).
class AllowList {
public:
    // Replaces the list with the networks the texts name. On a text that is
    // not a network, keeps the list as it was, names the text in error and
    // returns false.
    bool Parse(const std::vector<std::string>& texts, std::string& error);
    // Whether the address (host order) lies in one of the networks.
    bool Allows(std::uint32_t address) const;
    // The networks as the texts they were parsed from, comma-separated.
    std::string Describe() const;

private:
    struct Network {
        std::uint32_t address = 0;
        std::uint32_t mask = 0;
        std::string text;
    };

    static bool ParseNetwork(const std::string& text, Network& network);

    std::vector<Network> networks_;
};

}  // namespace vagent::service
