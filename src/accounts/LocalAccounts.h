#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vagent/UserRecords.h"

// The local account database through NetAPI. Each returns 1 for success and
// 0 for failure. Create, delete, password reset and group create and delete
// stop at the first failure; nothing done before it is undone.

// Creates each user with the password of the same index; an existing user
// only gets its password reset. The server is not used.
int NetAddUsers(const std::wstring& server, const std::vector<std::wstring>& users,
                const std::vector<std::wstring>& passwords);
// Deletes each user. The server is not used.
int NetDeleteUsers(const std::wstring& server, const std::vector<std::wstring>& users);
// Resets each user's password to the new one; the old ones are counted only.
// The server is not used.
int NetChangePasswords(const std::wstring& server, const std::vector<std::wstring>& users,
                       const std::vector<std::wstring>& oldPasswords,
                       const std::vector<std::wstring>& newPasswords);
int NetAddLocalGroups(const std::wstring& server, const std::vector<std::wstring>& groups);
int NetDeleteLocalGroups(const std::wstring& server, const std::vector<std::wstring>& groups);
// Adds each user, qualified with the machine's DNS domain, to one group.
int NetAddLocalGroupMembers(const std::wstring& server, const std::wstring& group,
                            const std::vector<std::string>& users);
// All normal accounts, all local groups.
int NetEnumUsers(const std::wstring& server, std::vector<std::wstring>& names);
int NetEnumLocalGroups(const std::wstring& server, std::vector<std::wstring>& names);
