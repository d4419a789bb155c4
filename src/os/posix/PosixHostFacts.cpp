#include "os/posix/PosixHostFacts.h"

#include <arpa/inet.h>
#include <dlfcn.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

#include "os/Status.h"
#include "os/posix/PosixPath.h"

namespace vagent::os {
namespace {

std::uint32_t ExecutablePath(std::string& path) {
    char buffer[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", buffer, sizeof buffer);
    if (length <= 0 || static_cast<std::size_t>(length) >= sizeof buffer) {
        return kFileNotFound;
    }
    path = ToWindowsPath(std::string(buffer, static_cast<std::size_t>(length)));
    return 0;
}

std::uint32_t LibraryPath(std::string& path) {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&LibraryPath), &info) == 0 || info.dli_fname == nullptr) {
        return kFileNotFound;
    }
    char resolved[PATH_MAX];
    if (realpath(info.dli_fname, resolved) == nullptr) {
        return kFileNotFound;
    }
    path = ToWindowsPath(resolved);
    return 0;
}

}  // namespace

std::uint32_t PosixHostFacts::ModuleFileName(Module module, std::string& path) {
    path.clear();
    return module == Module::Executable ? ExecutablePath(path) : LibraryPath(path);
}

LocalTime PosixHostFacts::CurrentLocalTime() {
    timeval now{};
    gettimeofday(&now, nullptr);
    tm parts{};
    localtime_r(&now.tv_sec, &parts);
    LocalTime time;
    time.year = parts.tm_year + 1900;
    time.month = parts.tm_mon + 1;
    time.day = parts.tm_mday;
    time.hour = parts.tm_hour;
    time.minute = parts.tm_min;
    time.second = parts.tm_sec;
    time.milliseconds = static_cast<int>(now.tv_usec / 1000);
    return time;
}

std::uint32_t PosixHostFacts::AdapterIPv4Addresses(std::vector<std::string>& addresses) {
    addresses.clear();
    ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0) {
        return kNotSupported;
    }
    for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET) {
            continue;
        }
        char text[INET_ADDRSTRLEN] = {};
        const auto* address = reinterpret_cast<const sockaddr_in*>(entry->ifa_addr);
        if (inet_ntop(AF_INET, &address->sin_addr, text, sizeof text) != nullptr) {
            addresses.emplace_back(text);
        }
    }
    freeifaddrs(list);
    return 0;
}

template <>
HostFacts& RealFacility<HostFacts>() {
    static PosixHostFacts real;
    return real;
}

}  // namespace vagent::os
