#include "os/ServiceManager.h"

#include "os/win32/LocalMemory.h"
#include "os/win32/WindowsHeaders.h"

namespace vagent::os {
namespace {

SC_HANDLE AsServiceHandle(ServiceHandle handle) {
    return reinterpret_cast<SC_HANDLE>(handle);
}

std::string TextOrEmpty(const char* text) {
    return text != nullptr ? std::string(text) : std::string();
}

class Win32ServiceManager final : public ServiceManager {
public:
    std::uint32_t OpenManager(std::uint32_t access, ServiceHandle& manager) override {
        const SC_HANDLE opened = OpenSCManagerA(nullptr, nullptr, access);
        manager = reinterpret_cast<ServiceHandle>(opened);
        return opened != nullptr ? 0 : GetLastError();
    }

    std::uint32_t OpenNamed(ServiceHandle manager, const std::string& name, std::uint32_t access,
                            ServiceHandle& service) override {
        const SC_HANDLE opened = OpenServiceA(AsServiceHandle(manager), name.c_str(), access);
        service = reinterpret_cast<ServiceHandle>(opened);
        return opened != nullptr ? 0 : GetLastError();
    }

    std::uint32_t CreateOwnProcess(ServiceHandle manager, const std::string& name,
                                   const std::string& displayName, const std::string& binaryPath,
                                   ServiceHandle& service) override {
        const SC_HANDLE created = CreateServiceA(
            AsServiceHandle(manager), name.c_str(), displayName.c_str(), SERVICE_ALL_ACCESS,
            SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL,
            binaryPath.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr);
        service = reinterpret_cast<ServiceHandle>(created);
        return created != nullptr ? 0 : GetLastError();
    }

    std::uint32_t Delete(ServiceHandle service) override {
        return ::DeleteService(AsServiceHandle(service)) ? 0 : GetLastError();
    }

    std::uint32_t QueryConfigSize(ServiceHandle service, std::uint32_t& needed) override {
        DWORD size = 0;
        if (QueryServiceConfigA(AsServiceHandle(service), nullptr, 0, &size)) {
            needed = size;
            return 0;
        }
        needed = size;
        return GetLastError();
    }

    std::uint32_t QueryConfig(ServiceHandle service, std::uint32_t capacity,
                              ServiceConfig& config) override {
        LocalMemory buffer(capacity);
        if (buffer.Get() == nullptr) {
            return GetLastError();
        }
        auto* record = static_cast<QUERY_SERVICE_CONFIGA*>(buffer.Get());
        DWORD needed = 0;
        if (!QueryServiceConfigA(AsServiceHandle(service), record, capacity, &needed)) {
            return GetLastError();
        }
        config.serviceType = record->dwServiceType;
        config.startType = record->dwStartType;
        config.binaryPath = TextOrEmpty(record->lpBinaryPathName);
        config.displayName = TextOrEmpty(record->lpDisplayName);
        config.hasStartName = record->lpServiceStartName != nullptr;
        config.startName = TextOrEmpty(record->lpServiceStartName);
        return 0;
    }

    std::uint32_t ChangeAccount(ServiceHandle service, const std::string& account,
                                const std::string& password,
                                const std::string& displayName) override {
        return ChangeServiceConfigA(AsServiceHandle(service), SERVICE_NO_CHANGE, SERVICE_NO_CHANGE,
                                    SERVICE_NO_CHANGE, nullptr, nullptr, nullptr, nullptr,
                                    account.c_str(), password.c_str(), displayName.c_str())
                   ? 0
                   : GetLastError();
    }

    void Close(ServiceHandle handle) override { CloseServiceHandle(AsServiceHandle(handle)); }
};

}  // namespace

template <>
ServiceManager& RealFacility<ServiceManager>() {
    static Win32ServiceManager real;
    return real;
}

}  // namespace vagent::os
