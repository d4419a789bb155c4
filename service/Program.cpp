#include "Program.h"

#include <cstdio>
#include <iostream>

#include "CommandLine.h"
#include "ManagedServer.h"
#include "Server.h"
#include "os/HostFacts.h"
#include "platform/ServiceRegistration.h"
#include "platform/StopRequests.h"
#include "vagent/DllLog.h"
#include "vagent/VLog.h"

namespace vagent::service {
namespace {

constexpr int kExitDone = 0;
constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;
constexpr const char* kServiceName = "vagentd";
constexpr const char* kServiceDisplayName = "vagentd agent service";

// The library's log, beside the executable, for as long as the program
// serves.
class InstalledLog {
public:
    InstalledLog() { SetDllLog(&log_); }
    ~InstalledLog() { SetDllLog(nullptr); }
    InstalledLog(const InstalledLog&) = delete;
    InstalledLog& operator=(const InstalledLog&) = delete;

private:
    VLog log_;
};

int RunInForeground(const ServerOptions& options) {
    platform::ArmStopRequests();
    InstalledLog log;
    Server server(options);
    const std::uint32_t status = server.Start();
    if (status != 0) {
        std::cerr << "vagentd: cannot serve on " << options.listenAddress << ":"
                  << options.listenPort << " (status " << status << ")" << std::endl;
        return kExitFailed;
    }
    std::printf("vagentd listening on %s:%u\n", options.listenAddress.c_str(),
                static_cast<unsigned>(server.Port()));
    std::fflush(stdout);
    platform::WaitForStopRequest();
    server.Stop();
    return kExitDone;
}

int RunUnderManager(const ServerOptions& options) {
    InstalledLog log;
    ManagedServer server(options);
    const std::uint32_t status = platform::RunUnderServiceManager(kServiceName, server);
    return status == 0 ? kExitDone : kExitFailed;
}

std::string Quoted(const std::string& text) {
    return "\"" + text + "\"";
}

// "<exe>" service <options>, each option quoted when it holds a space.
std::string ServiceCommandLine(const std::string& executable,
                               const std::vector<std::string>& serverArguments) {
    std::string line = Quoted(executable) + " service";
    for (const std::string& argument : serverArguments) {
        const bool plain = !argument.empty() && argument.find(' ') == std::string::npos;
        line += " " + (plain ? argument : Quoted(argument));
    }
    return line;
}

bool RefuseWithoutServiceManager() {
    if (platform::HasServiceManager()) {
        return false;
    }
    std::cerr << "vagentd: install and uninstall are for Windows; use 'vagentd run' here"
              << std::endl;
    return true;
}

int Install(const Command& command) {
    std::string executable;
    std::uint32_t status =
        os::Installed<os::HostFacts>().ModuleFileName(os::Module::Executable, executable);
    if (status == 0) {
        status = platform::InstallService(kServiceName, kServiceDisplayName,
                                          ServiceCommandLine(executable, command.serverArguments));
    }
    if (status != 0) {
        std::cerr << "vagentd: cannot install the service (status " << status << ")" << std::endl;
        return kExitFailed;
    }
    std::cout << "vagentd: service \"" << kServiceName << "\" installed" << std::endl;
    return kExitDone;
}

int Uninstall() {
    const std::uint32_t status = platform::UninstallService(kServiceName);
    if (status != 0) {
        std::cerr << "vagentd: cannot remove the service (status " << status << ")" << std::endl;
        return kExitFailed;
    }
    std::cout << "vagentd: service \"" << kServiceName << "\" removed" << std::endl;
    return kExitDone;
}

}  // namespace

int RunProgram(const std::vector<std::string>& arguments) {
    const Command command = ParseCommandLine(arguments);
    switch (command.action) {
        case Action::Help:
        case Action::Version:
            std::cout << command.text << std::endl;
            return kExitDone;
        case Action::UsageError:
            std::cerr << command.text << std::endl;
            return kExitUsage;
        case Action::Run:
            return RunInForeground(command.options);
        case Action::Service:
            return RunUnderManager(command.options);
        case Action::Install:
            return RefuseWithoutServiceManager() ? kExitUsage : Install(command);
        case Action::Uninstall:
            return RefuseWithoutServiceManager() ? kExitUsage : Uninstall();
    }
    return kExitUsage;
}

}  // namespace vagent::service
