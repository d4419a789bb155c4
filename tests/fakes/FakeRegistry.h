#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "os/Registry.h"

namespace vagent::test {

// The HKEY_LOCAL_MACHINE part of a registry, in memory: keys by path and
// their 32-bit values, names compared without regard to case. Records every
// open and close so that a test can check access rights and that every key
// was closed.
class FakeRegistry final : public os::Registry {
public:
    struct Open {
        std::string path;
        std::uint32_t access;
    };

    std::uint32_t OpenKey(os::RegistryKey root, const std::string& path, std::uint32_t access,
                          os::RegistryKey& key) override;
    std::uint32_t QueryValue(os::RegistryKey key, const std::string& name,
                             std::uint32_t& value) override;
    std::uint32_t SetNumberValue(os::RegistryKey key, const std::string& name,
                                 std::uint32_t value) override;
    std::uint32_t CloseKey(os::RegistryKey key) override;
    std::uint32_t CreateKey(os::RegistryKey root, const std::string& path,
                            os::RegistryKey& key) override;
    std::uint32_t DeleteKey(os::RegistryKey root, const std::string& path) override;
    std::uint32_t DeleteValue(os::RegistryKey key, const std::string& name) override;

    void AddKey(const std::string& path);
    bool HasKey(const std::string& path) const;
    void SetNumber(const std::string& path, const std::string& name, std::uint32_t value);
    // False when the key or the value is missing.
    bool Number(const std::string& path, const std::string& name, std::uint32_t& value) const;
    // Keys opened and not yet closed.
    std::size_t OpenKeys() const { return handles_.size(); }

    std::vector<Open> opens;
    int rootCloses = 0;

private:
    struct HandleState {
        std::string path;
        std::uint32_t access;
    };
    using Values = std::map<std::string, std::uint32_t>;

    const HandleState* Handle(os::RegistryKey key) const;

    std::map<std::string, Values> keys_;
    std::map<os::RegistryKey, HandleState> handles_;
    os::RegistryKey nextHandle_ = 0x1000;
};

}  // namespace vagent::test
