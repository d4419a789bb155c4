#include "files/PathContainment.h"

#include <algorithm>
#include <vector>

#include "support/TextCompare.h"

namespace vagent::files {
namespace {

bool IsSeparator(char character) {
    return character == '\\' || character == '/';
}

bool OnlyDotsAndSpaces(const std::string& part) {
    return part.find_first_not_of(". ") == std::string::npos;
}

// The separators a path starts with, kept as a part of their own so that a
// rooted path, a network path and a relative one never compare equal.
std::string LeadingPart(const std::string& path) {
    std::size_t count = 0;
    while (count < path.size() && IsSeparator(path[count])) {
        ++count;
    }
    return std::string(std::min<std::size_t>(count, 2), '\\');
}

// Takes one part into the resolved list; false when it cannot be resolved.
bool TakePart(const std::string& part, std::vector<std::string>& parts, std::size_t fixed) {
    if (part.empty() || part == ".") {
        return true;
    }
    if (part == "..") {
        if (parts.size() <= fixed) {
            return false;
        }
        parts.pop_back();
        return true;
    }
    if (OnlyDotsAndSpaces(part)) {
        return false;
    }
    parts.push_back(part);
    return true;
}

std::vector<std::string> SplitAtSeparators(const std::string& path) {
    std::vector<std::string> parts(1);
    for (const char character : path) {
        if (IsSeparator(character)) {
            parts.emplace_back();
        } else {
            parts.back() += character;
        }
    }
    return parts;
}

bool IsDrive(const std::string& part) {
    return part.size() == 2 && part[1] == ':';
}

// Splits the path into its resolved parts. The leading separators and a
// drive ("C:") that opens the path are never taken away by "..".
bool Resolve(const std::string& path, std::vector<std::string>& parts) {
    const std::string leading = LeadingPart(path);
    if (!leading.empty()) {
        parts.push_back(leading);
    }
    const std::vector<std::string> split = SplitAtSeparators(path);
    const bool opensWithDrive = leading.empty() && IsDrive(split.front());
    if (opensWithDrive) {
        parts.push_back(split.front());
    }
    const std::size_t fixed = parts.size();
    for (std::size_t index = opensWithDrive ? 1 : 0; index < split.size(); ++index) {
        if (!TakePart(split[index], parts, fixed)) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool LiesUnder(const std::string& root, const std::string& name) {
    std::vector<std::string> rootParts;
    std::vector<std::string> nameParts;
    if (!Resolve(root, rootParts) || rootParts.empty() || !Resolve(name, nameParts) ||
        nameParts.size() < rootParts.size()) {
        return false;
    }
    return std::equal(rootParts.begin(), rootParts.end(), nameParts.begin(), EqualsIgnoringCase);
}

}  // namespace vagent::files
