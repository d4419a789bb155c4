#pragma once

#include <string>

#include "vagent/ServerItem.h"

// The servers of the primary domain, one enumeration from its start: on
// success items points to a counted array (delete[]) of count items, and
// more, when given, says whether the list went on. Returns 1 or 0.
int ServerList(ServerItem** items, int* count, int* more);

// The name of the first domain controller in the server list; 1 when one was
// found, else 0 with name untouched.
int GetDnCtrl(std::wstring& name);

// Whether this machine is in the server list (1) and, in isDc, whether it is
// a domain controller.
int IsDnCtrl(int& isDc);

// Whether this machine is a member computer. Mode 0 reads the server list
// (isMember is 1 for a listed machine that is not a domain controller); mode
// 1 looks for the machine among the directory's computer objects.
int IsComputer(int& isMember, int mode);
