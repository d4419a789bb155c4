#pragma once

#include <map>
#include <string>

#include "vagent/Export.h"
#include "vagent/SessionRecords.h"

// The process-wide session table that the host program feeds.

// Replaces the table by a copy of in. Once more than 60 seconds have passed
// since the first call ever, each call also drops the records of sessions
// that are gone or in no listable state, and copies the table back into out
// (which may be null).
VAGENT_API void SetSessionInfo(std::map<int, _VXSessionA>* in, std::map<int, _VXSessionA>* out);

// The id of the first session, in ascending id order, whose MAC address
// begins with mac (compared without regard to case); 1 if one was found, else
// 0 with id untouched.
VAGENT_API int GetSessionIdByMac(const std::string& mac, int& id);
