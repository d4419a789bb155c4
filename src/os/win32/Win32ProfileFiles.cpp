#include "os/ProfileFiles.h"
#include "os/win32/WindowsHeaders.h"

namespace vagent::os {
namespace {

class Win32ProfileFiles final : public ProfileFiles {
public:
    std::uint32_t ReadInt(const std::string& section, const std::string& key,
                          std::int32_t defaultValue, const std::string& path) override {
        return GetPrivateProfileIntA(section.c_str(), key.c_str(), defaultValue, path.c_str());
    }

    std::uint32_t WriteString(const std::string& section, const std::string& key,
                              const std::string& value, const std::string& path) override {
        if (WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(), path.c_str())) {
            return 0;
        }
        const DWORD status = GetLastError();
        return status != ERROR_SUCCESS ? status : ERROR_WRITE_FAULT;
    }
};

}  // namespace

template <>
ProfileFiles& RealFacility<ProfileFiles>() {
    static Win32ProfileFiles real;
    return real;
}

}  // namespace vagent::os
