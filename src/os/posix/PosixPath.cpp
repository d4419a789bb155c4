#include "os/posix/PosixPath.h"

#include <algorithm>
#include <cctype>

namespace vagent::os {

std::string ToPosixPath(const std::string& windowsPath) {
    std::string path = windowsPath;
    if (path.size() >= 2 && path[1] == ':' &&
        std::isalpha(static_cast<unsigned char>(path[0])) != 0) {
        path.erase(0, 2);
    }
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

std::string ToWindowsPath(const std::string& posixPath) {
    std::string path = posixPath;
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

}  // namespace vagent::os
