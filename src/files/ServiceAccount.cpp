#include "files/ServiceAccount.h"

#include "os/ServiceManager.h"
#include "os/Status.h"

namespace vagent::files {
namespace {

// The manager and the service opened with the given rights, closed when the
// scope ends.
class OpenedService {
public:
    OpenedService(const std::string& name, std::uint32_t managerAccess, std::uint32_t serviceAccess)
        : services_(os::Installed<os::ServiceManager>()) {
        status_ = services_.OpenManager(managerAccess, manager_);
        if (status_ == 0) {
            status_ = services_.OpenNamed(manager_, name, serviceAccess, service_);
        }
    }
    ~OpenedService() {
        if (service_ != 0) {
            services_.Close(service_);
        }
        if (manager_ != 0) {
            services_.Close(manager_);
        }
    }
    OpenedService(const OpenedService&) = delete;
    OpenedService& operator=(const OpenedService&) = delete;

    std::uint32_t Status() const { return status_; }
    os::ServiceHandle Service() const { return service_; }
    os::ServiceManager& Services() { return services_; }

private:
    os::ServiceManager& services_;
    os::ServiceHandle manager_ = 0;
    os::ServiceHandle service_ = 0;
    std::uint32_t status_ = 0;
};

std::uint32_t QueryConfig(OpenedService& opened, os::ServiceConfig& config) {
    std::uint32_t needed = 0;
    const std::uint32_t sizeStatus = opened.Services().QueryConfigSize(opened.Service(), needed);
    if (sizeStatus != os::kInsufficientBuffer) {
        return sizeStatus != 0 ? sizeStatus : os::kInvalidParameter;
    }
    return opened.Services().QueryConfig(opened.Service(), needed, config);
}

}  // namespace

bool QueryServiceAccount(const std::string& service, std::string& account, bool& hasAccount,
                         std::uint32_t& errorCode) {
    OpenedService opened(service, os::kScManagerConnect, os::kServiceQueryConfig);
    os::ServiceConfig config;
    errorCode = opened.Status() != 0 ? opened.Status() : QueryConfig(opened, config);
    if (errorCode != 0) {
        return false;
    }
    hasAccount = config.hasStartName;
    account = config.startName;
    return true;
}

bool ChangeServiceAccount(const std::string& service, const std::string& account,
                          const std::string& password, std::uint32_t& errorCode) {
    OpenedService opened(service, os::kScManagerCreateService, os::kServiceChangeConfig);
    errorCode = opened.Status() != 0
                    ? opened.Status()
                    : opened.Services().ChangeAccount(opened.Service(), account, password, service);
    return errorCode == 0;
}

}  // namespace vagent::files
