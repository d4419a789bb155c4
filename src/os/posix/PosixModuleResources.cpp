#include "os/ModuleResources.h"

#include "os/Status.h"

namespace vagent::os {
namespace {

// Executables here carry no Windows resources.
class PosixModuleResources final : public ModuleResources {
public:
    std::uint32_t LoadAsDataFile(const std::string& /*path*/, ModuleHandle& module) override {
        module = 0;
        return kNotSupported;
    }
    std::uint32_t ResourceNames(ModuleHandle /*module*/, std::uint16_t /*type*/,
                                std::vector<ResourceName>& /*names*/) override {
        return kNotSupported;
    }
    std::uint32_t ResourceBytes(ModuleHandle /*module*/, const ResourceName& /*name*/,
                                std::uint16_t /*type*/,
                                std::vector<std::uint8_t>& /*bytes*/) override {
        return kNotSupported;
    }
    void Free(ModuleHandle /*module*/) override {}
};

}  // namespace

template <>
ModuleResources& RealFacility<ModuleResources>() {
    static PosixModuleResources real;
    return real;
}

}  // namespace vagent::os
