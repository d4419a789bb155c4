#pragma once

#include <string>

namespace vagent {

// The two "Config.ini" files, deliberately in different places.

// Beside the library's own module: the settings of the library (reconnection,
// printer management). False when the module's path is not known.
bool LibraryConfigPath(std::string& path);
// Beside the executable of the process: the single-sign-on switches. False
// when the executable's path is not known or does not fit 1024 bytes.
bool ExecutableConfigPath(std::string& path);

}  // namespace vagent
