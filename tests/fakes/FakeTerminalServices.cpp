#include "fakes/FakeTerminalServices.h"

#include <gtest/gtest.h>

#include "os/Status.h"

namespace vagent::test {

std::uint32_t FakeTerminalServices::EnumerateSessions(std::uint32_t reserved, std::uint32_t version,
                                                      std::vector<os::SessionEntry>& list) {
    enumerations.push_back(Enumeration{reserved, version});
    list.clear();
    if (enumerateStatus != 0) {
        return enumerateStatus;
    }
    list = sessions;
    return 0;
}

std::uint32_t FakeTerminalServices::QuerySessionInformation(std::uint32_t sessionId,
                                                            std::uint32_t infoClass,
                                                            std::vector<std::uint8_t>& answer) {
    queries.push_back(Query{sessionId, infoClass});
    answer.clear();
    if (infoClass != os::kSessionClientAddress) {
        ADD_FAILURE() << "the fake terminal server answers only the client address, not class "
                      << infoClass;
        return os::kNotSupported;
    }
    const auto found = clientAddresses.find(sessionId);
    if (!HasSession(sessionId) || found == clientAddresses.end()) {
        return os::kFileNotFound;
    }
    answer = found->second;
    return 0;
}

std::uint32_t FakeTerminalServices::LogoffSession(std::uint32_t sessionId, bool wait) {
    logoffs.push_back(SessionCall{sessionId, wait});
    if (sessionCallStatus != 0) {
        return sessionCallStatus;
    }
    return HasSession(sessionId) ? 0u : std::uint32_t{os::kFileNotFound};
}

std::uint32_t FakeTerminalServices::DisconnectSession(std::uint32_t sessionId, bool wait) {
    disconnects.push_back(SessionCall{sessionId, wait});
    if (sessionCallStatus != 0) {
        return sessionCallStatus;
    }
    return HasSession(sessionId) ? 0u : std::uint32_t{os::kFileNotFound};
}

std::uint32_t FakeTerminalServices::SendMessageBox(std::uint32_t sessionId,
                                                   const std::string& title,
                                                   const std::string& message, std::uint32_t style,
                                                   std::uint32_t timeoutSeconds, bool wait,
                                                   std::uint32_t& response) {
    messages.push_back(Message{sessionId, title, message, style, timeoutSeconds, wait});
    // The answer for a message that was not waited for.
    constexpr std::uint32_t kNotWaitedFor = 32001;
    response = kNotWaitedFor;
    if (messageStatus != 0) {
        return messageStatus;
    }
    return HasSession(sessionId) ? 0u : std::uint32_t{os::kFileNotFound};
}

void FakeTerminalServices::AddSession(std::uint32_t id, const std::string& winStationName,
                                      std::uint32_t state) {
    os::SessionEntry entry;
    entry.sessionId = id;
    entry.winStationName = winStationName;
    entry.state = state;
    sessions.push_back(entry);
}

bool FakeTerminalServices::HasSession(std::uint32_t id) const {
    for (const os::SessionEntry& session : sessions) {
        if (session.sessionId == id) {
            return true;
        }
    }
    return false;
}

}  // namespace vagent::test
