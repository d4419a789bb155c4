#include "os/Registry.h"
#include "os/Status.h"

namespace vagent::os {
namespace {

// A POSIX host has no registry: only the predefined roots exist, and closing
// them succeeds as it does on Windows.
class PosixRegistry final : public Registry {
public:
    std::uint32_t OpenKey(RegistryKey, const std::string&, std::uint32_t,
                          RegistryKey& key) override {
        key = 0;
        return kNotSupported;
    }
    std::uint32_t QueryValue(RegistryKey, const std::string&, std::uint32_t&) override {
        return kNotSupported;
    }
    std::uint32_t SetNumberValue(RegistryKey, const std::string&, std::uint32_t) override {
        return kNotSupported;
    }
    std::uint32_t CloseKey(RegistryKey key) override {
        return key == kLocalMachine ? 0u : std::uint32_t{kNotSupported};
    }
    std::uint32_t CreateKey(RegistryKey, const std::string&, RegistryKey& key) override {
        key = 0;
        return kNotSupported;
    }
    std::uint32_t DeleteKey(RegistryKey, const std::string&) override { return kNotSupported; }
    std::uint32_t DeleteValue(RegistryKey, const std::string&) override { return kNotSupported; }
};

}  // namespace

template <>
Registry& RealFacility<Registry>() {
    static PosixRegistry real;
    return real;
}

}  // namespace vagent::os
