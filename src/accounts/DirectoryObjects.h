#pragma once

#include <string>
#include <vector>

#include "vagent/UserRecords.h"

// Object-level directory operations; COM is initialised by the caller.
// Each returns 1 when every name went through and 0 when it stopped; what
// was committed before a stop stays.

// Creates each name in the container, with the class's attributes; users
// also get their password and an enabled account.
int AddObject(const std::wstring& containerPath, const std::wstring& objectClass,
              const std::vector<std::wstring>& names, const std::vector<std::wstring>& passwords);

// Deletes each name from the container, or from the container its own full
// path names.
int DeleteObject(const std::wstring& containerPath, const std::wstring& objectClass,
                 const std::vector<std::wstring>& names);

// Lists the users (users non-zero) or groups under the base, its direct
// children only or (subtree non-zero) the whole subtree: name = the object's
// path, comment = its description.
int SearchObjects(const wchar_t* basePath, int users, std::vector<_VXUserInfoA>& out, int subtree);
