#pragma once

#include <string>

#include "os/TerminalServices.h"

namespace vagent {

// Sessions of this system have window stations named "VXP#...".

// The name's first four characters are "VXP#" in any case.
bool HasSystemPrefixInAnyCase(const std::string& winStationName);
// A session that the session list shows and the session table keeps: a
// disconnected one, or an active one whose window station begins with
// "VXP#" exactly.
bool IsListedSession(const os::SessionEntry& session);

}  // namespace vagent
