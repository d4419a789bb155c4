#include "sessions/SingleSignOn.h"

#include <string>

#include "os/ProfileFiles.h"
#include "sessions/ConfigFiles.h"

namespace vagent {
namespace {

int WriteSwitch(const char* key, int flag) {
    std::string path;
    if (!ExecutableConfigPath(path)) {
        return 0;
    }
    const std::uint32_t status =
        os::Installed<os::ProfileFiles>().WriteString("Base", key, flag != 0 ? "1" : "0", path);
    return status == 0 ? 1 : 0;
}

}  // namespace

int EnableSSO(int flag) {
    return WriteSwitch("SSOEnabled", flag);
}

int EnableZ9SSO(int flag) {
    return WriteSwitch("Z9SSOEnabled", flag);
}

}  // namespace vagent
