#pragma once

#include <string>
#include <vector>

#include "sessions/SessionTable.h"
#include "vagent/SessionRecords.h"

namespace vagent {

// The terminal-session operations on the server the process runs on.

// The number of this system's sessions ("VXP#" window stations, any case),
// or -1 when the sessions cannot be listed.
int GetSessionCounts();
// The number of all sessions, or -1.
int GetSessionCountsAll();
// The session table's records of the listed sessions (disconnected ones, and
// active "VXP#" ones), in the server's order; 1, or 0 when the sessions
// cannot be listed.
int GetSessionInfo(std::vector<_VXSessionA>& sessions);
int GetSessionInfo(const SessionTable& table, std::vector<_VXSessionA>& sessions);
// Sends the message, without waiting, to every session of this system; the
// number of those sessions, or -1.
int BroadcastMessage(const std::string& title, const std::string& message);
// Logs the session off (flag non-zero) or disconnects it, without waiting;
// 1 when the server did so.
int SessionLogoff(int sessionId, int flag);

}  // namespace vagent
