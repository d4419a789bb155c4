#include "facade/ReceivedPath.h"

#include <vector>

#include "support/TextCompare.h"

namespace vagent::facade {
namespace {

struct PathParts {
    bool absolute = false;
    bool climbsOut = false;
    std::vector<std::string> parts;
};

bool IsSeparator(char c) {
    return c == '\\' || c == '/';
}

void AddPart(PathParts& path, const std::string& part) {
    if (part.empty() || part == ".") {
        return;
    }
    if (part != "..") {
        path.parts.push_back(part);
    } else if (path.parts.empty()) {
        path.climbsOut = true;
    } else {
        path.parts.pop_back();
    }
}

PathParts Resolve(const std::string& text) {
    PathParts path;
    path.absolute = !text.empty() && IsSeparator(text.front());
    std::string part;
    for (const char c : text) {
        if (IsSeparator(c)) {
            AddPart(path, part);
            part.clear();
        } else {
            part.push_back(c);
        }
    }
    AddPart(path, part);
    return path;
}

}  // namespace

bool LiesUnder(const std::string& path, const std::string& root) {
    const PathParts resolvedPath = Resolve(path);
    const PathParts resolvedRoot = Resolve(root);
    if (resolvedPath.climbsOut || resolvedRoot.climbsOut ||
        resolvedPath.absolute != resolvedRoot.absolute ||
        resolvedPath.parts.size() < resolvedRoot.parts.size()) {
        return false;
    }
    for (std::size_t i = 0; i < resolvedRoot.parts.size(); ++i) {
        if (!EqualsIgnoringCase(resolvedPath.parts[i], resolvedRoot.parts[i])) {
            return false;
        }
    }
    return true;
}

}  // namespace vagent::facade
