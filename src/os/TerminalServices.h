#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "os/Facilities.h"

namespace vagent::os {

// Connection states of a terminal session, by their Windows numbers.
enum SessionState : std::uint32_t {
    kSessionActive = 0,
    kSessionConnected = 1,
    kSessionConnectQuery = 2,
    kSessionShadow = 3,
    kSessionDisconnected = 4,
    kSessionIdle = 5,
    kSessionListen = 6,
    kSessionReset = 7,
    kSessionDown = 8,
    kSessionInit = 9,
};

// The information class of a session's client address.
constexpr std::uint32_t kSessionClientAddress = 14;

// The message box style with a single OK button.
constexpr std::uint32_t kMessageBoxOk = 0;

// One session as the server lists it.
struct SessionEntry {
    std::uint32_t sessionId = 0;
    std::string winStationName;
    std::uint32_t state = kSessionActive;
};

// The terminal sessions of the server the process runs on. The lists and
// answers the system allocates are released inside each call.
class TerminalServices {
public:
    virtual ~TerminalServices() = default;
    // Mirrors WTSEnumerateSessionsA on the current server: the sessions in the
    // server's order; returns 0 or the failure status.
    virtual std::uint32_t EnumerateSessions(std::uint32_t reserved, std::uint32_t version,
                                            std::vector<SessionEntry>& sessions) = 0;
    // Mirrors WTSQuerySessionInformationA on the current server: the answer's
    // bytes; returns 0 or the failure status.
    virtual std::uint32_t QuerySessionInformation(std::uint32_t sessionId, std::uint32_t infoClass,
                                                  std::vector<std::uint8_t>& answer) = 0;
    // Mirrors WTSLogoffSession on the current server.
    virtual std::uint32_t LogoffSession(std::uint32_t sessionId, bool wait) = 0;
    // Mirrors WTSDisconnectSession on the current server.
    virtual std::uint32_t DisconnectSession(std::uint32_t sessionId, bool wait) = 0;
    // Mirrors WTSSendMessageA on the current server; title and message go
    // with their lengths, response receives the button pressed (or the code
    // for "not waited for").
    virtual std::uint32_t SendMessageBox(std::uint32_t sessionId, const std::string& title,
                                         const std::string& message, std::uint32_t style,
                                         std::uint32_t timeoutSeconds, bool wait,
                                         std::uint32_t& response) = 0;
};

template <>
TerminalServices& RealFacility<TerminalServices>();

}  // namespace vagent::os
