#pragma once

#include <cstdint>
#include <string>

namespace vagent::service::platform {

// What the service manager starts and stops.
class ServiceBody {
public:
    virtual ~ServiceBody() = default;
    // 0 once serving, or the failure status the manager is told.
    virtual std::uint32_t Start() = 0;
    virtual void Stop() = 0;
};

// Registration with the system's service manager and running under it.
// Systems without one answer every call with status 50 (not supported).

bool HasServiceManager();
// Registers a service of its own process, started automatically with the
// system, that runs commandLine.
std::uint32_t InstallService(const std::string& name, const std::string& displayName,
                             const std::string& commandLine);
// Asks a running service to stop, then removes its registration.
std::uint32_t UninstallService(const std::string& name);
// Hands the calling thread to the service manager: it starts body, reports
// it running, stops it when the manager asks and returns once it has
// stopped.
std::uint32_t RunUnderServiceManager(const std::string& name, ServiceBody& body);

}  // namespace vagent::service::platform
