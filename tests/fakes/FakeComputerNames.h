#pragma once

#include <map>
#include <string>
#include <vector>

#include "os/ComputerNames.h"

namespace vagent::test {

// Computer names by format, answered as GetComputerNameExA does; records the
// format and the capacity of every call.
class FakeComputerNames final : public os::ComputerNames {
public:
    struct Call {
        std::uint32_t format;
        bool withBuffer;
        std::uint32_t capacity;
    };

    std::uint32_t ComputerNameEx(std::uint32_t format, char* buffer, std::uint32_t& size) override;

    std::map<std::uint32_t, std::string> names = {
        {os::kComputerNameNetBIOS, "TS01"},
        {os::kComputerNameDnsHostname, "ts01"},
        {os::kComputerNameDnsDomain, "corp.example.com"},
        {os::kComputerNameDnsFullyQualified, "ts01.corp.example.com"},
    };
    std::uint32_t failure = 0;
    std::vector<Call> calls;
};

}  // namespace vagent::test
