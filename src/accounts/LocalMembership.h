#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The NetAPI sequences the user and group workers run themselves: group
// membership, member and group listings, comments. Where a failure sets the
// worker's error code, errorCode receives the system's last error.

// Adds the user, as given, to each local group; stops at the first failure.
int AddUserToLocalGroups(const std::wstring& user, const std::vector<std::wstring>& groups,
                         std::uint32_t& errorCode);
// Removes the user from each local group; goes on after failures.
int RemoveUserFromLocalGroups(const std::wstring& user, const std::vector<std::wstring>& groups,
                              std::uint32_t& errorCode);
// Removes each user from the group; goes on after failures, without a log
// line.
int RemoveUsersFromGroup(const std::wstring& group, const std::vector<std::wstring>& users,
                         std::uint32_t& errorCode);
// The account names of a local group's members; a failing call ends the
// listing quietly.
std::vector<std::wstring> LocalGroupMemberNames(const std::wstring& group);
// An account's or a group's comment, empty when it cannot be read.
std::wstring UserComment(const std::wstring& user);
std::wstring GroupComment(const std::wstring& group);
// The groups of a user, from one call; 0 when the call fails.
int UserGroupNames(const std::wstring& user, std::vector<std::wstring>& groups);
