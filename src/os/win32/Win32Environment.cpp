#include "os/Environment.h"

#include <vector>

#include "os/win32/WindowsHeaders.h"

namespace vagent::os {
namespace {

class Win32Environment final : public Environment {
public:
    std::uint32_t Value(const std::string& name, std::string& value) override {
        SetLastError(0);
        const DWORD needed = GetEnvironmentVariableA(name.c_str(), nullptr, 0);
        if (needed == 0) {
            const DWORD status = GetLastError();
            return status != 0 ? status : ERROR_ENVVAR_NOT_FOUND;
        }
        std::vector<char> buffer(needed, '\0');
        const DWORD length = GetEnvironmentVariableA(name.c_str(), buffer.data(), needed);
        if (length == 0 || length >= needed) {
            return GetLastError();
        }
        value.assign(buffer.data(), length);
        return 0;
    }
};

}  // namespace

template <>
Environment& RealFacility<Environment>() {
    static Win32Environment real;
    return real;
}

}  // namespace vagent::os
