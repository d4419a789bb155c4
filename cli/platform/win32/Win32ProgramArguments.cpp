#include "platform/ProgramArguments.h"

#include "platform/TextEncoding.h"
#include "platform/win32/WindowsHeaders.h"

namespace vagentctl::platform {

// The narrow arguments are in the system's code page and lose what it cannot
// hold, so the wide command line is read instead.
std::vector<std::string> ProgramArguments(int, char**) {
    std::vector<std::string> arguments;
    int count = 0;
    LPWSTR* wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide == nullptr) {
        return arguments;
    }
    for (int i = 1; i < count; ++i) {
        arguments.push_back(WideToUtf8(wide[i]));
    }
    LocalFree(wide);
    return arguments;
}

}  // namespace vagentctl::platform
