#include "AllowList.h"

#include "Ipv4Text.h"

namespace vagent::service {
namespace {

constexpr std::uint32_t kAddressBits = 32;

bool ParsePrefixLength(const std::string& text, std::uint32_t& bits) {
    if (text.empty() || text.size() > 2 || (text.size() == 2 && text[0] == '0')) {
        return false;
    }
    bits = 0;
    for (char c : text) {
        if (c < '0' || c > '9') {
            return false;
        }
        bits = bits * 10 + static_cast<std::uint32_t>(c - '0');
    }
    return bits <= kAddressBits;
}

std::uint32_t MaskOf(std::uint32_t bits) {
    return bits == 0 ? 0 : ~static_cast<std::uint32_t>(0) << (kAddressBits - bits);
}

}  // namespace

bool AllowList::ParseNetwork(const std::string& text, Network& network) {
    const std::size_t slash = text.find('/');
    std::uint32_t bits = kAddressBits;
    if (slash != std::string::npos && !ParsePrefixLength(text.substr(slash + 1), bits)) {
        return false;
    }
    std::uint32_t address = 0;
    if (!ParseIpv4(text.substr(0, slash), address)) {
        return false;
    }
    network.mask = MaskOf(bits);
    network.address = address & network.mask;
    network.text = text;
    return true;
}

bool AllowList::Parse(const std::vector<std::string>& texts, std::string& error) {
    std::vector<Network> parsed;
    for (const std::string& text : texts) {
        Network network;
        if (!ParseNetwork(text, network)) {
            error = "not an IPv4 network (ADDRESS/BITS): \"" + text + "\"";
            return false;
        }
        parsed.push_back(network);
    }
    networks_ = std::move(parsed);
    return true;
}

bool AllowList::Allows(std::uint32_t address) const {
    for (const Network& network : networks_) {
        if ((address & network.mask) == network.address) {
            return true;
        }
    }
    return false;
}

std::string AllowList::Describe() const {
    std::string described;
    for (const Network& network : networks_) {
        if (!described.empty()) {
            described += ",";
        }
        described += network.text;
    }
    return described;
}

}  // namespace vagent::service
