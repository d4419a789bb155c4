#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vagent::files {

// The temporary path of an icon file: the value of "TEMP", a backslash, and
// the icon path's file name (after its last backslash, else its last colon).
std::string TemporaryIconPath(const std::string& temporaryDirectory, const std::string& iconPath);

// Writes the first icon group of each executable, with its images, as an icon
// file at the temporary path of the matching icon path, and hands back those
// temporary paths in order. The first failure returns false with its status
// in errorCode.
bool CreateIcons(const std::vector<std::string>& exeFiles,
                 const std::vector<std::string>& iconFiles,
                 std::vector<std::string>& temporaryFiles, std::uint32_t& errorCode);

}  // namespace vagent::files
