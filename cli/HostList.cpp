#include "HostList.h"

#include <CLI/CLI.hpp>

#include <fstream>

namespace vagentctl {
namespace {

constexpr unsigned long kHighestPort = 65535;

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos) {
        return std::string();
    }
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::vector<std::string> HostsFileLines(const std::string& path) {
    std::ifstream file(path);
    if (!file) {
        throw CLI::ValidationError("--hosts", "cannot read " + path);
    }
    std::vector<std::string> hosts;
    std::string line;
    while (std::getline(file, line)) {
        const std::string host = Trimmed(line.substr(0, line.find('#')));
        if (!host.empty()) {
            hosts.push_back(host);
        }
    }
    return hosts;
}

}  // namespace

bool IsPort(const std::string& text) {
    if (text.empty() || text.size() > 5 ||
        text.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    const unsigned long value = std::stoul(text);
    return value >= 1 && value <= kHighestPort;
}

HostSpec ParseHostSpec(const std::string& text, const std::string& defaultPort) {
    const std::size_t colon = text.rfind(':');
    HostSpec spec{text, text.substr(0, colon), defaultPort};
    if (colon != std::string::npos) {
        spec.port = text.substr(colon + 1);
    }
    if (spec.name.empty() || !IsPort(spec.port)) {
        throw CLI::ValidationError("host", "\"" + text + "\" is not HOST or HOST:PORT");
    }
    return spec;
}

std::vector<HostSpec> CollectHosts(const std::vector<std::string>& given,
                                   const std::string& hostsFile, const std::string& defaultPort) {
    std::vector<std::string> texts = given;
    if (!hostsFile.empty()) {
        for (const std::string& host : HostsFileLines(hostsFile)) {
            texts.push_back(host);
        }
    }
    std::vector<HostSpec> hosts;
    for (const std::string& text : texts) {
        if (!Trimmed(text).empty()) {
            hosts.push_back(ParseHostSpec(Trimmed(text), defaultPort));
        }
    }
    return hosts;
}

}  // namespace vagentctl
