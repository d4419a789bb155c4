#pragma once

#include <cstdint>
#include <string>

#include "os/Facilities.h"

namespace vagent::os {

// A service-manager or service handle; 0 when none.
using ServiceHandle = std::uintptr_t;

// Access rights and values of the service manager, by their Windows numbers.
enum ServiceManagerValue : std::uint32_t {
    kScManagerConnect = 0x0001,
    kScManagerCreateService = 0x0002,
    kServiceQueryConfig = 0x0001,
    kServiceChangeConfig = 0x0002,
    kServiceAllAccess = 0xF01FF,
    kServiceWin32OwnProcess = 0x10,
    kServiceDemandStart = 3,
    kServiceErrorNormal = 1,
    kServiceNoChange = 0xFFFFFFFFu,
};

// Statuses of the service manager that the portable code names.
enum ServiceManagerStatus : std::uint32_t {
    kServiceDoesNotExist = 1060,
    kServiceMarkedForDelete = 1072,
    kServiceExists = 1073,
};

// The part of QUERY_SERVICE_CONFIGA the library reads.
struct ServiceConfig {
    std::uint32_t serviceType = 0;
    std::uint32_t startType = 0;
    std::string binaryPath;
    std::string startName;
    std::string displayName;
    bool hasStartName = false;
};

// The local machine's service control manager.
class ServiceManager {
public:
    virtual ~ServiceManager() = default;
    // Mirrors OpenSCManagerA on the local machine's active database.
    virtual std::uint32_t OpenManager(std::uint32_t access, ServiceHandle& manager) = 0;
    // Mirrors OpenServiceA.
    virtual std::uint32_t OpenNamed(ServiceHandle manager, const std::string& name,
                                    std::uint32_t access, ServiceHandle& service) = 0;
    // Mirrors CreateServiceA for a service of its own process, started on
    // demand, with normal error control and the local system account.
    virtual std::uint32_t CreateOwnProcess(ServiceHandle manager, const std::string& name,
                                           const std::string& displayName,
                                           const std::string& binaryPath,
                                           ServiceHandle& service) = 0;
    // Mirrors DeleteService.
    virtual std::uint32_t Delete(ServiceHandle service) = 0;
    // Mirrors QueryServiceConfigA with no buffer: returns 122 (insufficient
    // buffer) with the size needed, or another status.
    virtual std::uint32_t QueryConfigSize(ServiceHandle service, std::uint32_t& needed) = 0;
    // Mirrors LocalAlloc(LPTR, capacity) and QueryServiceConfigA into that
    // buffer, handing back the record's texts before LocalFree.
    virtual std::uint32_t QueryConfig(ServiceHandle service, std::uint32_t capacity,
                                      ServiceConfig& config) = 0;
    // Mirrors ChangeServiceConfigA with the service type, start type and
    // error control unchanged and no binary path, load-order group, tag or
    // dependencies: only the account, its password and the display name.
    virtual std::uint32_t ChangeAccount(ServiceHandle service, const std::string& account,
                                        const std::string& password,
                                        const std::string& displayName) = 0;
    // Mirrors CloseServiceHandle.
    virtual void Close(ServiceHandle handle) = 0;
};

template <>
ServiceManager& RealFacility<ServiceManager>();

}  // namespace vagent::os
