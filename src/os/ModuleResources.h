#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "os/Facilities.h"

namespace vagent::os {

// A module loaded as a data file; 0 when none.
using ModuleHandle = std::uintptr_t;

// Resource types by their Windows numbers.
enum ResourceType : std::uint16_t {
    kResourceIcon = 3,
    kResourceGroupIcon = 14,
};

// A resource's name: a number, or a text.
struct ResourceName {
    bool numeric = true;
    std::uint16_t id = 0;
    std::string text;
};

// The resources of executables.
class ModuleResources {
public:
    virtual ~ModuleResources() = default;
    // Mirrors LoadLibraryExA with LOAD_LIBRARY_AS_DATAFILE (2).
    virtual std::uint32_t LoadAsDataFile(const std::string& path, ModuleHandle& module) = 0;
    // Mirrors EnumResourceNamesA: every name of the type, in the order the
    // enumeration reports them.
    virtual std::uint32_t ResourceNames(ModuleHandle module, std::uint16_t type,
                                        std::vector<ResourceName>& names) = 0;
    // Mirrors FindResourceA, LoadResource, SizeofResource and LockResource:
    // a copy of the resource's bytes.
    virtual std::uint32_t ResourceBytes(ModuleHandle module, const ResourceName& name,
                                        std::uint16_t type, std::vector<std::uint8_t>& bytes) = 0;
    // Mirrors FreeLibrary.
    virtual void Free(ModuleHandle module) = 0;
};

template <>
ModuleResources& RealFacility<ModuleResources>();

}  // namespace vagent::os
