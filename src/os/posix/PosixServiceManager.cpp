#include "os/ServiceManager.h"

#include "os/Status.h"

namespace vagent::os {
namespace {

// A POSIX system has no service control manager: every call answers "not
// supported" and hands out no handle.
class PosixServiceManager final : public ServiceManager {
public:
    std::uint32_t OpenManager(std::uint32_t /*access*/, ServiceHandle& manager) override {
        manager = 0;
        return kNotSupported;
    }
    std::uint32_t OpenNamed(ServiceHandle /*manager*/, const std::string& /*name*/,
                            std::uint32_t /*access*/, ServiceHandle& service) override {
        service = 0;
        return kNotSupported;
    }
    std::uint32_t CreateOwnProcess(ServiceHandle /*manager*/, const std::string& /*name*/,
                                   const std::string& /*displayName*/,
                                   const std::string& /*binaryPath*/,
                                   ServiceHandle& service) override {
        service = 0;
        return kNotSupported;
    }
    std::uint32_t Delete(ServiceHandle /*service*/) override { return kNotSupported; }
    std::uint32_t QueryConfigSize(ServiceHandle /*service*/, std::uint32_t& needed) override {
        needed = 0;
        return kNotSupported;
    }
    std::uint32_t QueryConfig(ServiceHandle /*service*/, std::uint32_t /*capacity*/,
                              ServiceConfig& /*config*/) override {
        return kNotSupported;
    }
    std::uint32_t ChangeAccount(ServiceHandle /*service*/, const std::string& /*account*/,
                                const std::string& /*password*/,
                                const std::string& /*displayName*/) override {
        return kNotSupported;
    }
    void Close(ServiceHandle /*handle*/) override {}
};

}  // namespace

template <>
ServiceManager& RealFacility<ServiceManager>() {
    static PosixServiceManager real;
    return real;
}

}  // namespace vagent::os
