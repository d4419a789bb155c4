#pragma once

#include <map>
#include <string>
#include <vector>

#include "os/ServiceManager.h"

namespace vagent::test {

// An in-memory service manager: services by name with their configuration.
// Records every call as "Operation argument"; handles it hands out are
// counted so that a test can check that all were closed.
class FakeServiceManager final : public os::ServiceManager {
public:
    std::uint32_t OpenManager(std::uint32_t access, os::ServiceHandle& manager) override;
    std::uint32_t OpenNamed(os::ServiceHandle manager, const std::string& name,
                            std::uint32_t access, os::ServiceHandle& service) override;
    std::uint32_t CreateOwnProcess(os::ServiceHandle manager, const std::string& name,
                                   const std::string& displayName, const std::string& binaryPath,
                                   os::ServiceHandle& service) override;
    std::uint32_t Delete(os::ServiceHandle service) override;
    std::uint32_t QueryConfigSize(os::ServiceHandle service, std::uint32_t& needed) override;
    std::uint32_t QueryConfig(os::ServiceHandle service, std::uint32_t capacity,
                              os::ServiceConfig& config) override;
    std::uint32_t ChangeAccount(os::ServiceHandle service, const std::string& account,
                                const std::string& password,
                                const std::string& displayName) override;
    void Close(os::ServiceHandle handle) override;

    struct Service {
        os::ServiceConfig config;
        std::string password;
    };
    std::map<std::string, Service> services;
    std::uint32_t managerStatus = 0;
    std::uint32_t queryStatus = 0;
    std::uint32_t changeStatus = 0;
    std::vector<std::string> calls;
    int openHandles = 0;

private:
    // The service a handle names; handles above kFirstServiceHandle index
    // opened services.
    Service* Find(os::ServiceHandle service);
    std::vector<std::string> opened_;
};

}  // namespace vagent::test
