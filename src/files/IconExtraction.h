#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vagent::files {

// The temporary path of an icon file: the value of "TEMP", a backslash, and
// the icon path's file name (after its last backslash or slash, else its last
// colon). Empty when that name is made of dots and spaces alone (such as
// ".."), which would leave the temporary directory.
std::string TemporaryIconPath(const std::string& temporaryDirectory, const std::string& iconPath);

// Writes the first icon group of each executable, with its images, as an icon
// file at the temporary path of the matching icon path, and hands back those
// temporary paths in order. The first failure returns false with its status
// in errorCode; an icon path without a name of its own fails with 0xE6000001.
bool CreateIcons(const std::vector<std::string>& exeFiles,
                 const std::vector<std::string>& iconFiles,
                 std::vector<std::string>& temporaryFiles, std::uint32_t& errorCode);

}  // namespace vagent::files
