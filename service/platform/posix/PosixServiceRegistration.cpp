#include "platform/ServiceRegistration.h"

namespace vagent::service::platform {
namespace {

constexpr std::uint32_t kNotSupported = 50;

}  // namespace

bool HasServiceManager() {
    return false;
}

std::uint32_t InstallService(const std::string&, const std::string&, const std::string&) {
    return kNotSupported;
}

std::uint32_t UninstallService(const std::string&) {
    return kNotSupported;
}

std::uint32_t RunUnderServiceManager(const std::string&, ServiceBody&) {
    return kNotSupported;
}

}  // namespace vagent::service::platform
