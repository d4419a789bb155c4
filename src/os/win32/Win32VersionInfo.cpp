#include "os/VersionInfo.h"

#include "os/win32/WindowsHeaders.h"

namespace vagent::os {
namespace {

class Win32VersionInfo final : public VersionInfo {
public:
    std::uint32_t Version(VersionRecord& record) override {
        OSVERSIONINFOA info{};
        info.dwOSVersionInfoSize = sizeof info;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
        const BOOL found = GetVersionExA(&info);
#pragma GCC diagnostic pop
        if (!found) {
            return GetLastError();
        }
        record.majorVersion = info.dwMajorVersion;
        record.minorVersion = info.dwMinorVersion;
        record.buildNumber = info.dwBuildNumber;
        record.platformId = info.dwPlatformId;
        return 0;
    }
};

}  // namespace

template <>
VersionInfo& RealFacility<VersionInfo>() {
    static Win32VersionInfo real;
    return real;
}

}  // namespace vagent::os
