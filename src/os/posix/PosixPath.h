#pragma once

#include <string>

namespace vagent::os {

// The library speaks Windows paths. On a POSIX system a leading drive ("C:")
// is dropped and backslashes become slashes; the reverse turns slashes into
// backslashes.
std::string ToPosixPath(const std::string& windowsPath);
std::string ToWindowsPath(const std::string& posixPath);

}  // namespace vagent::os
