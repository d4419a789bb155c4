#include "fakes/FakeModuleResources.h"

#include <gtest/gtest.h>

#include "os/Status.h"

namespace vagent::test {
namespace {

constexpr std::uint32_t kResourceTypeNotFound = 1813;
constexpr std::uint32_t kResourceNameNotFound = 1814;

}  // namespace

const FakeModuleResources::Module* FakeModuleResources::Find(os::ModuleHandle module) {
    if (module == 0 || module > loaded_.size()) {
        ADD_FAILURE() << "unknown module handle " << module;
        return nullptr;
    }
    return &modules.at(loaded_[module - 1]);
}

std::uint32_t FakeModuleResources::LoadAsDataFile(const std::string& path,
                                                  os::ModuleHandle& module) {
    module = 0;
    if (modules.count(path) == 0) {
        return os::kFileNotFound;
    }
    loaded_.push_back(path);
    module = loaded_.size();
    ++loads;
    return 0;
}

std::uint32_t FakeModuleResources::ResourceNames(os::ModuleHandle module, std::uint16_t type,
                                                 std::vector<os::ResourceName>& names) {
    const Module* found = Find(module);
    if (found == nullptr || type != os::kResourceGroupIcon) {
        return kResourceTypeNotFound;
    }
    if (found->groupNames.empty()) {
        return kResourceTypeNotFound;
    }
    names = found->groupNames;
    return 0;
}

std::uint32_t FakeModuleResources::ResourceBytes(os::ModuleHandle module,
                                                 const os::ResourceName& name, std::uint16_t type,
                                                 std::vector<std::uint8_t>& bytes) {
    const Module* found = Find(module);
    if (found == nullptr) {
        return os::kInvalidParameter;
    }
    if (!name.numeric) {
        const auto text = found->textNamedGroups.find(name.text);
        if (type != os::kResourceGroupIcon || text == found->textNamedGroups.end()) {
            return kResourceNameNotFound;
        }
        bytes = text->second;
        return 0;
    }
    const auto resource = found->resources.find({type, name.id});
    if (resource == found->resources.end()) {
        return kResourceNameNotFound;
    }
    bytes = resource->second;
    return 0;
}

void FakeModuleResources::Free(os::ModuleHandle module) {
    Find(module);
    ++frees;
}

}  // namespace vagent::test
