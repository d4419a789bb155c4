#include "files/HostInformation.h"

#include <algorithm>

#include "os/Com.h"
#include "os/ComputerNames.h"
#include "os/HostFacts.h"

namespace vagent::files {
namespace {

// The host name's buffer, as the system is asked with it.
constexpr std::uint32_t kNameBufferSize = 1024;

}  // namespace

std::string ImageDirectory() {
    std::string path;
    os::Host().ModuleFileName(os::Module::Executable, path);
    if (path.size() >= kNameBufferSize) {
        path.resize(kNameBufferSize - 1);
    }
    const std::size_t cut = path.rfind('\\');
    return cut == std::string::npos ? path : path.substr(0, cut + 1);
}

std::uint32_t HostName(std::string& name) {
    os::Com& com = os::Installed<os::Com>();
    const bool initialised = com.Initialize() >= 0;
    char buffer[kNameBufferSize] = {};
    std::uint32_t size = kNameBufferSize;
    const std::uint32_t status = os::Installed<os::ComputerNames>().ComputerNameEx(
        os::kComputerNameDnsHostname, buffer, size);
    if (initialised) {
        com.Uninitialize();
    }
    if (status == 0) {
        name.assign(buffer, std::min(size, kNameBufferSize - 1));
    }
    return status;
}

}  // namespace vagent::files
