#include "sessions/ConfigFiles.h"

#include "os/HostFacts.h"

namespace vagent {
namespace {

constexpr char kConfigFileName[] = "Config.ini";
// The executable's path is fetched into a buffer of this size, terminator
// included.
constexpr std::size_t kExecutablePathBuffer = 1024;

}  // namespace

bool LibraryConfigPath(std::string& path) {
    std::string module;
    if (os::Installed<os::HostFacts>().ModuleFileName(os::Module::Library, module) != 0) {
        return false;
    }
    const std::size_t slash = module.rfind('\\');
    path = slash == std::string::npos ? std::string(kConfigFileName)
                                      : module.substr(0, slash) + "\\" + kConfigFileName;
    return true;
}

bool ExecutableConfigPath(std::string& path) {
    std::string executable;
    if (os::Installed<os::HostFacts>().ModuleFileName(os::Module::Executable, executable) != 0 ||
        executable.size() >= kExecutablePathBuffer) {
        return false;
    }
    const std::size_t slash = executable.rfind('\\');
    path = (slash == std::string::npos ? std::string() : executable.substr(0, slash + 1)) +
           kConfigFileName;
    return true;
}

}  // namespace vagent
