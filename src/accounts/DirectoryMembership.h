#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "os/Directory.h"

// Listings over the directory; COM is initialised by the caller. Each
// returns 0 or the failing directory status.

// Appends the path of every group the user belongs to.
std::int32_t GetUserGroups(vagent::os::DirectoryUser& user, std::vector<std::wstring>& paths);

// Clears paths, then appends the path of every member of the collection.
std::int32_t EnumMembers(vagent::os::DirectoryMembers& members, std::vector<std::wstring>& paths);

// The group's members, as EnumMembers gives them.
std::int32_t EnumerateGroupMembers(vagent::os::DirectoryGroup& group,
                                   std::vector<std::wstring>& paths);

// Appends the names (without their "CN=") of the container's objects of the
// given class. Objects inside the listed ones are not visited.
std::int32_t EnumObject(const std::wstring& containerPath, const std::wstring& objectClass,
                        std::vector<std::wstring>& names);
