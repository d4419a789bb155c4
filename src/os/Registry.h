#pragma once

#include <cstdint>
#include <string>

#include "os/Facilities.h"

namespace vagent::os {

// An open registry key. The predefined root keys have fixed values of their
// own; every other value is a key that OpenKey or CreateKey handed out.
using RegistryKey = std::uintptr_t;

constexpr RegistryKey kLocalMachine = 0x80000002u;

// Access rights, by their Windows numbers.
enum RegistryAccess : std::uint32_t {
    kKeyRead = 0x20019,
    kKeyWrite = 0x20006,
};

// The registry.
class Registry {
public:
    virtual ~Registry() = default;
    // Mirrors RegOpenKeyExA: opens an existing key, never creates one;
    // returns 0 or the failure status (2 for a missing key).
    virtual std::uint32_t OpenKey(RegistryKey root, const std::string& path, std::uint32_t access,
                                  RegistryKey& key) = 0;
    // Mirrors RegQueryValueExA into a 4-byte buffer, whatever type the value
    // is stored with; returns 0, 2 for a missing value, 234 for a value
    // longer than 4 bytes.
    virtual std::uint32_t QueryValue(RegistryKey key, const std::string& name,
                                     std::uint32_t& value) = 0;
    // Mirrors RegSetValueExA with a REG_DWORD of 4 bytes.
    virtual std::uint32_t SetNumberValue(RegistryKey key, const std::string& name,
                                         std::uint32_t value) = 0;
    // Mirrors RegCloseKey; closing a root key succeeds and does nothing.
    virtual std::uint32_t CloseKey(RegistryKey key) = 0;
    // Mirrors RegCreateKeyExA with read and write access: opens the key,
    // creating it and its missing parents. For installers and tests.
    virtual std::uint32_t CreateKey(RegistryKey root, const std::string& path,
                                    RegistryKey& key) = 0;
    // Mirrors RegDeleteKeyA: deletes a key that has no subkeys.
    virtual std::uint32_t DeleteKey(RegistryKey root, const std::string& path) = 0;
    // Mirrors RegDeleteValueA on an open key; 2 for a missing value. For
    // tests that put back what they changed.
    virtual std::uint32_t DeleteValue(RegistryKey key, const std::string& name) = 0;
};

template <>
Registry& RealFacility<Registry>();

}  // namespace vagent::os
