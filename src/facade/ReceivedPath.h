#pragma once

#include <string>

namespace vagent::facade {

// Whether a path that a service named for a received file or directory lies
// at or under root: both are taken apart at their separators (backslash or
// slash), "." and ".." are resolved, and the parts compared without regard
// to case. A ".." that climbs above the path's start, or any path outside
// root, does not lie under it.
bool LiesUnder(const std::string& path, const std::string& root);

}  // namespace vagent::facade
