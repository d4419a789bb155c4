#include "sessions/SessionOperations.h"

#include <cstdint>

#include "os/TerminalServices.h"
#include "sessions/SessionNames.h"
#include "sessions/SystemErrorText.h"
#include "vagent/DllLog.h"

namespace vagent {
namespace {

constexpr std::uint32_t kReserved = 0;
constexpr std::uint32_t kVersion = 1;

os::TerminalServices& Server() {
    return os::Installed<os::TerminalServices>();
}

std::uint32_t EnumerateSessions(std::vector<os::SessionEntry>& sessions) {
    return Server().EnumerateSessions(kReserved, kVersion, sessions);
}

}  // namespace

int GetSessionCounts() {
    std::vector<os::SessionEntry> sessions;
    if (EnumerateSessions(sessions) != 0) {
        return -1;
    }
    int count = static_cast<int>(sessions.size());
    for (const os::SessionEntry& session : sessions) {
        if (!HasSystemPrefixInAnyCase(session.winStationName)) {
            --count;
        }
    }
    return count;
}

int GetSessionCountsAll() {
    std::vector<os::SessionEntry> sessions;
    if (EnumerateSessions(sessions) != 0) {
        DllLogPrintf("GetSessionCountsAll : WTSEnumerateSessions failed");
        return -1;
    }
    return static_cast<int>(sessions.size());
}

int GetSessionInfo(std::vector<_VXSessionA>& sessions) {
    return GetSessionInfo(SessionTable::Process(), sessions);
}

int GetSessionInfo(const SessionTable& table, std::vector<_VXSessionA>& sessions) {
    sessions.clear();
    std::vector<os::SessionEntry> listed;
    const std::uint32_t status = EnumerateSessions(listed);
    if (status != 0) {
        DllLogPrintf("GetSessionInfo : WTSEnumerateSessions failed ---- %s",
                     SystemErrorText(status).c_str());
        return 0;
    }
    for (const os::SessionEntry& session : listed) {
        _VXSessionA record;
        if (!IsListedSession(session) ||
            !table.LookUp(static_cast<int>(session.sessionId), record)) {
            continue;
        }
        // The client address is asked for but the table's own address is
        // what the record keeps: deployed hosts fill it themselves.
        std::vector<std::uint8_t> address;
        Server().QuerySessionInformation(session.sessionId, os::kSessionClientAddress, address);
        sessions.push_back(record);
    }
    return 1;
}

int BroadcastMessage(const std::string& title, const std::string& message) {
    std::vector<os::SessionEntry> sessions;
    if (EnumerateSessions(sessions) != 0) {
        return -1;
    }
    int count = static_cast<int>(sessions.size());
    for (auto session = sessions.rbegin(); session != sessions.rend(); ++session) {
        if (!HasSystemPrefixInAnyCase(session->winStationName)) {
            --count;
            continue;
        }
        std::uint32_t response = 0;
        Server().SendMessageBox(session->sessionId, title, message, os::kMessageBoxOk, 0, false,
                                response);
    }
    return count;
}

int SessionLogoff(int sessionId, int flag) {
    const auto id = static_cast<std::uint32_t>(sessionId);
    const std::uint32_t status =
        flag != 0 ? Server().LogoffSession(id, false) : Server().DisconnectSession(id, false);
    return status == 0 ? 1 : 0;
}

}  // namespace vagent
