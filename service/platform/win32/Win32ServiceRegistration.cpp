#include "platform/ServiceRegistration.h"

#include <vector>

#include "os/win32/WindowsHeaders.h"

namespace vagent::service::platform {
namespace {

constexpr DWORD kStopWaitHintMilliseconds = 10000;
constexpr DWORD kStopPollMilliseconds = 500;
constexpr int kStopPolls = 20;

// Closes a service-manager handle on every way out.
class ScopedServiceHandle {
public:
    explicit ScopedServiceHandle(SC_HANDLE handle) : handle_(handle) {}
    ~ScopedServiceHandle() {
        if (handle_ != nullptr) {
            CloseServiceHandle(handle_);
        }
    }
    ScopedServiceHandle(const ScopedServiceHandle&) = delete;
    ScopedServiceHandle& operator=(const ScopedServiceHandle&) = delete;
    SC_HANDLE Get() const { return handle_; }

private:
    SC_HANDLE handle_;
};

std::uint32_t LastError() {
    return static_cast<std::uint32_t>(GetLastError());
}

// The service manager calls the service's main and control functions with
// no context of their own: what they serve is kept here for the one service
// this process runs.
struct ManagedService {
    std::string name;
    ServiceBody* body = nullptr;
    SERVICE_STATUS_HANDLE statusHandle = nullptr;
    HANDLE stopEvent = nullptr;
    std::uint32_t exitStatus = 0;
};

ManagedService& Managed() {
    static ManagedService managed;
    return managed;
}

void ReportStatus(DWORD state, DWORD exitCode, DWORD waitHint) {
    SERVICE_STATUS status{};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    status.dwControlsAccepted =
        state == SERVICE_RUNNING ? SERVICE_ACCEPT_STOP | SERVICE_ACCEPT_SHUTDOWN : 0;
    status.dwWin32ExitCode = exitCode;
    status.dwWaitHint = waitHint;
    SetServiceStatus(Managed().statusHandle, &status);
}

DWORD WINAPI OnServiceControl(DWORD control, DWORD, LPVOID, LPVOID) {
    switch (control) {
        case SERVICE_CONTROL_STOP:
        case SERVICE_CONTROL_SHUTDOWN:
            ReportStatus(SERVICE_STOP_PENDING, NO_ERROR, kStopWaitHintMilliseconds);
            SetEvent(Managed().stopEvent);
            return NO_ERROR;
        case SERVICE_CONTROL_INTERROGATE:
            return NO_ERROR;
        default:
            return ERROR_CALL_NOT_IMPLEMENTED;
    }
}

void WINAPI ServiceMain(DWORD, LPSTR*) {
    ManagedService& managed = Managed();
    managed.statusHandle =
        RegisterServiceCtrlHandlerExA(managed.name.c_str(), OnServiceControl, nullptr);
    if (managed.statusHandle == nullptr) {
        managed.exitStatus = LastError();
        return;
    }
    ReportStatus(SERVICE_START_PENDING, NO_ERROR, kStopWaitHintMilliseconds);
    managed.exitStatus = managed.body->Start();
    if (managed.exitStatus != 0) {
        ReportStatus(SERVICE_STOPPED, managed.exitStatus, 0);
        return;
    }
    ReportStatus(SERVICE_RUNNING, NO_ERROR, 0);
    WaitForSingleObject(managed.stopEvent, INFINITE);
    managed.body->Stop();
    ReportStatus(SERVICE_STOPPED, NO_ERROR, 0);
}

// Waits a bounded time for a stop request to take effect, so that the
// removal that follows does not leave the service marked for deletion.
void StopAndWait(SC_HANDLE service) {
    SERVICE_STATUS status{};
    if (!ControlService(service, SERVICE_CONTROL_STOP, &status)) {
        return;
    }
    for (int i = 0; i < kStopPolls && status.dwCurrentState != SERVICE_STOPPED; ++i) {
        Sleep(kStopPollMilliseconds);
        if (!QueryServiceStatus(service, &status)) {
            return;
        }
    }
}

}  // namespace

bool HasServiceManager() {
    return true;
}

std::uint32_t InstallService(const std::string& name, const std::string& displayName,
                             const std::string& commandLine) {
    const ScopedServiceHandle manager(
        OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT | SC_MANAGER_CREATE_SERVICE));
    if (manager.Get() == nullptr) {
        return LastError();
    }
    const ScopedServiceHandle service(
        CreateServiceA(manager.Get(), name.c_str(), displayName.c_str(), SERVICE_ALL_ACCESS,
                       SERVICE_WIN32_OWN_PROCESS, SERVICE_AUTO_START, SERVICE_ERROR_NORMAL,
                       commandLine.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
    return service.Get() == nullptr ? LastError() : 0;
}

std::uint32_t UninstallService(const std::string& name) {
    const ScopedServiceHandle manager(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT));
    if (manager.Get() == nullptr) {
        return LastError();
    }
    const ScopedServiceHandle service(
        OpenServiceA(manager.Get(), name.c_str(), SERVICE_STOP | SERVICE_QUERY_STATUS | DELETE));
    if (service.Get() == nullptr) {
        return LastError();
    }
    StopAndWait(service.Get());
    return DeleteService(service.Get()) ? 0 : LastError();
}

std::uint32_t RunUnderServiceManager(const std::string& name, ServiceBody& body) {
    ManagedService& managed = Managed();
    managed.name = name;
    managed.body = &body;
    managed.stopEvent = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    if (managed.stopEvent == nullptr) {
        return LastError();
    }
    std::vector<char> serviceName(name.begin(), name.end());
    serviceName.push_back('\0');
    SERVICE_TABLE_ENTRYA table[] = {{serviceName.data(), ServiceMain}, {nullptr, nullptr}};
    const std::uint32_t status =
        StartServiceCtrlDispatcherA(table) ? managed.exitStatus : LastError();
    CloseHandle(managed.stopEvent);
    managed.stopEvent = nullptr;
    return status;
}

}  // namespace vagent::service::platform
