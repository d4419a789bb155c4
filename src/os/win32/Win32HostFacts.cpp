#include "os/win32/Win32HostFacts.h"

#include <memory>

#include "os/win32/WindowsHeaders.h"
#include <iphlpapi.h>

namespace vagent::os {
namespace {

// The library's own module: the one that holds this function.
HMODULE LibraryModule() {
    HMODULE module = nullptr;
    GetModuleHandleExA(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCSTR>(&LibraryModule), &module);
    return module;
}

}  // namespace

std::uint32_t Win32HostFacts::ModuleFileName(Module module, std::string& path) {
    HMODULE handle = module == Module::Executable ? nullptr : LibraryModule();
    // Long paths: grow until the name fits, since a short buffer truncates
    // silently with only the last error to tell.
    for (DWORD size = MAX_PATH;; size *= 2) {
        std::string buffer(size, '\0');
        SetLastError(0);
        const DWORD length = GetModuleFileNameA(handle, &buffer[0], size);
        if (length == 0) {
            path.clear();
            return GetLastError();
        }
        if (length < size && GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
            buffer.resize(length);
            path = buffer;
            return 0;
        }
        if (size >= 32768) {
            path.clear();
            return ERROR_INSUFFICIENT_BUFFER;
        }
    }
}

LocalTime Win32HostFacts::CurrentLocalTime() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    LocalTime time;
    time.year = now.wYear;
    time.month = now.wMonth;
    time.day = now.wDay;
    time.hour = now.wHour;
    time.minute = now.wMinute;
    time.second = now.wSecond;
    time.milliseconds = now.wMilliseconds;
    return time;
}

std::uint32_t Win32HostFacts::AdapterIPv4Addresses(std::vector<std::string>& addresses) {
    addresses.clear();
    ULONG size = 0;
    DWORD status = GetAdaptersInfo(nullptr, &size);
    if (status != ERROR_BUFFER_OVERFLOW) {
        return status;
    }
    std::unique_ptr<unsigned char[]> buffer(new (std::nothrow) unsigned char[size]);
    if (!buffer) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
    auto* adapters = reinterpret_cast<IP_ADAPTER_INFO*>(buffer.get());
    status = GetAdaptersInfo(adapters, &size);
    if (status != ERROR_SUCCESS) {
        return status;
    }
    for (const IP_ADAPTER_INFO* adapter = adapters; adapter != nullptr; adapter = adapter->Next) {
        for (const IP_ADDR_STRING* entry = &adapter->IpAddressList; entry != nullptr;
             entry = entry->Next) {
            addresses.emplace_back(entry->IpAddress.String);
        }
    }
    return 0;
}

template <>
HostFacts& RealFacility<HostFacts>() {
    static Win32HostFacts real;
    return real;
}

}  // namespace vagent::os
