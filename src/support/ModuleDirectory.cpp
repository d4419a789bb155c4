#include "support/ModuleDirectory.h"

namespace vagent {

std::string BoundedText(const char* text) {
    std::string bounded(text);
    if (bounded.size() > kPathTextCapacity) {
        bounded.resize(kPathTextCapacity);
    }
    return bounded;
}

std::string ModuleDirectory(os::Module module) {
    std::string path;
    if (os::Host().ModuleFileName(module, path) != 0) {
        return std::string();
    }
    path = BoundedText(path.c_str());
    const std::size_t slash = path.rfind('\\');
    if (slash != std::string::npos) {
        path.resize(slash + 1);
    }
    return path;
}

}  // namespace vagent
