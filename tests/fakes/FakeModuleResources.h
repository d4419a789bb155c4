#pragma once

#include <map>
#include <string>
#include <vector>

#include "os/ModuleResources.h"

namespace vagent::test {

// Executables with resources, by path. Each resource is keyed by type and
// number (names given as text are kept in textNames). Counts loads and frees.
class FakeModuleResources final : public os::ModuleResources {
public:
    struct Module {
        std::vector<os::ResourceName> groupNames;
        // (type, id) -> bytes
        std::map<std::pair<std::uint16_t, std::uint16_t>, std::vector<std::uint8_t>> resources;
        std::map<std::string, std::vector<std::uint8_t>> textNamedGroups;
    };

    std::uint32_t LoadAsDataFile(const std::string& path, os::ModuleHandle& module) override;
    std::uint32_t ResourceNames(os::ModuleHandle module, std::uint16_t type,
                                std::vector<os::ResourceName>& names) override;
    std::uint32_t ResourceBytes(os::ModuleHandle module, const os::ResourceName& name,
                                std::uint16_t type, std::vector<std::uint8_t>& bytes) override;
    void Free(os::ModuleHandle module) override;

    std::map<std::string, Module> modules;
    int loads = 0;
    int frees = 0;

private:
    const Module* Find(os::ModuleHandle module);
    std::vector<std::string> loaded_;
};

}  // namespace vagent::test
