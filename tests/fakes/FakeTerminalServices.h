#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "os/TerminalServices.h"

namespace vagent::test {

// A terminal server with the sessions the test lists; records every call.
class FakeTerminalServices final : public os::TerminalServices {
public:
    struct Enumeration {
        std::uint32_t reserved;
        std::uint32_t version;
    };
    struct Query {
        std::uint32_t sessionId;
        std::uint32_t infoClass;
    };
    struct SessionCall {
        std::uint32_t sessionId;
        bool wait;
    };
    struct Message {
        std::uint32_t sessionId;
        std::string title;
        std::string message;
        std::uint32_t style;
        std::uint32_t timeoutSeconds;
        bool wait;
    };

    std::uint32_t EnumerateSessions(std::uint32_t reserved, std::uint32_t version,
                                    std::vector<os::SessionEntry>& list) override;
    std::uint32_t QuerySessionInformation(std::uint32_t sessionId, std::uint32_t infoClass,
                                          std::vector<std::uint8_t>& answer) override;
    std::uint32_t LogoffSession(std::uint32_t sessionId, bool wait) override;
    std::uint32_t DisconnectSession(std::uint32_t sessionId, bool wait) override;
    std::uint32_t SendMessageBox(std::uint32_t sessionId, const std::string& title,
                                 const std::string& message, std::uint32_t style,
                                 std::uint32_t timeoutSeconds, bool wait,
                                 std::uint32_t& response) override;

    // Adds a session at the end of the server's list.
    void AddSession(std::uint32_t id, const std::string& winStationName, std::uint32_t state);
    bool HasSession(std::uint32_t id) const;

    std::vector<os::SessionEntry> sessions;
    // The client address answer (information class 14) by session id.
    std::map<std::uint32_t, std::vector<std::uint8_t>> clientAddresses;
    std::uint32_t enumerateStatus = 0;
    std::uint32_t sessionCallStatus = 0;
    std::uint32_t messageStatus = 0;

    std::vector<Enumeration> enumerations;
    std::vector<Query> queries;
    std::vector<SessionCall> logoffs;
    std::vector<SessionCall> disconnects;
    std::vector<Message> messages;
};

}  // namespace vagent::test
