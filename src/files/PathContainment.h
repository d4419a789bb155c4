#pragma once

#include <string>

namespace vagent::files {

// Whether the path named by a peer stays where the request allowed: true when
// name is root itself or lies beneath it. Both are resolved first: backslash
// and slash both separate, empty and "." parts go, ".." takes away the part
// before it; parts compare without regard to case. A ".." that climbs above
// the start of its path, a part of dots and spaces alone other than "." and
// ".." (which the system may read as something else), or an empty root makes
// the answer false.
bool LiesUnder(const std::string& root, const std::string& name);

}  // namespace vagent::files
