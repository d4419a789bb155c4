#pragma once

#include <string>
#include <vector>

#include "os/HostFacts.h"

namespace vagent::test {

// A host whose facts the test sets.
class FakeHostFacts final : public os::HostFacts {
public:
    std::uint32_t ModuleFileName(os::Module module, std::string& path) override;
    os::LocalTime CurrentLocalTime() override;
    std::uint32_t AdapterIPv4Addresses(std::vector<std::string>& addresses) override;

    std::string executablePath = "C:\\Program Files\\vagent\\vagentd.exe";
    std::string libraryPath = "C:\\Program Files\\vagent\\vagent.dll";
    std::uint32_t moduleStatus = 0;
    os::LocalTime now{2026, 11, 21, 9, 5, 7, 42};
    std::vector<std::string> adapters;
    std::uint32_t adapterStatus = 0;
    int adapterQueries = 0;
};

}  // namespace vagent::test
