#pragma once

#include <cstdint>

namespace vagent {

// The terminal server's settings by type number: 0 one session per user,
// 1 port, 2 encryption level, 3 connection, 4 disconnection and 5 idle time
// limits (registry, as stored), 6 reconnection (library "Config.ini",
// default 0), 7 connections allowed (registry, inverted), 8 printer
// management (library "Config.ini", default 1).

// 1 with the setting in value, 0 for an unknown type or an unreadable
// registry value.
int GetSysSetting(long type, std::int32_t* value);
// 1 when the setting was stored; the file settings give 1 in any case.
int SetSysSetting(long type, long value);

}  // namespace vagent
