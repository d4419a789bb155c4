#include "os/TerminalServices.h"
#include "os/win32/WindowsHeaders.h"

#include <wtsapi32.h>

namespace vagent::os {
namespace {

// Some terminal-server calls fail without setting a last error; a failure
// must still read as one.
std::uint32_t FailureStatus() {
    const DWORD status = GetLastError();
    return status != ERROR_SUCCESS ? status : ERROR_GEN_FAILURE;
}

// Holds what the terminal server allocated and releases it when the scope
// ends.
template <typename T>
class WtsMemory {
public:
    WtsMemory() = default;
    ~WtsMemory() {
        if (memory_ != nullptr) {
            WTSFreeMemory(memory_);
        }
    }
    WtsMemory(const WtsMemory&) = delete;
    WtsMemory& operator=(const WtsMemory&) = delete;

    T** Receive() { return &memory_; }
    const T* Get() const { return memory_; }

private:
    T* memory_ = nullptr;
};

class Win32TerminalServices final : public TerminalServices {
public:
    std::uint32_t EnumerateSessions(std::uint32_t reserved, std::uint32_t version,
                                    std::vector<SessionEntry>& sessions) override {
        sessions.clear();
        WtsMemory<WTS_SESSION_INFOA> list;
        DWORD count = 0;
        if (!WTSEnumerateSessionsA(WTS_CURRENT_SERVER_HANDLE, reserved, version, list.Receive(),
                                   &count)) {
            return FailureStatus();
        }
        const WTS_SESSION_INFOA* entries = list.Get();
        for (DWORD i = 0; entries != nullptr && i < count; ++i) {
            SessionEntry entry;
            entry.sessionId = entries[i].SessionId;
            entry.winStationName =
                entries[i].pWinStationName != nullptr ? entries[i].pWinStationName : "";
            entry.state = static_cast<std::uint32_t>(entries[i].State);
            sessions.push_back(entry);
        }
        return 0;
    }

    std::uint32_t QuerySessionInformation(std::uint32_t sessionId, std::uint32_t infoClass,
                                          std::vector<std::uint8_t>& answer) override {
        answer.clear();
        WtsMemory<char> memory;
        DWORD size = 0;
        if (!WTSQuerySessionInformationA(WTS_CURRENT_SERVER_HANDLE, sessionId,
                                         static_cast<WTS_INFO_CLASS>(infoClass), memory.Receive(),
                                         &size)) {
            return FailureStatus();
        }
        const char* bytes = memory.Get();
        if (bytes != nullptr) {
            answer.assign(bytes, bytes + size);
        }
        return 0;
    }

    std::uint32_t LogoffSession(std::uint32_t sessionId, bool wait) override {
        return WTSLogoffSession(WTS_CURRENT_SERVER_HANDLE, sessionId, wait ? TRUE : FALSE)
                   ? 0
                   : FailureStatus();
    }

    std::uint32_t DisconnectSession(std::uint32_t sessionId, bool wait) override {
        return WTSDisconnectSession(WTS_CURRENT_SERVER_HANDLE, sessionId, wait ? TRUE : FALSE)
                   ? 0
                   : FailureStatus();
    }

    std::uint32_t SendMessageBox(std::uint32_t sessionId, const std::string& title,
                                 const std::string& message, std::uint32_t style,
                                 std::uint32_t timeoutSeconds, bool wait,
                                 std::uint32_t& response) override {
        DWORD answer = 0;
        // The call takes its texts as writable buffers.
        std::string titleBuffer = title;
        std::string messageBuffer = message;
        const BOOL sent = WTSSendMessageA(WTS_CURRENT_SERVER_HANDLE, sessionId, &titleBuffer[0],
                                          static_cast<DWORD>(title.size()), &messageBuffer[0],
                                          static_cast<DWORD>(message.size()), style, timeoutSeconds,
                                          &answer, wait ? TRUE : FALSE);
        response = answer;
        return sent ? 0 : FailureStatus();
    }
};

}  // namespace

template <>
TerminalServices& RealFacility<TerminalServices>() {
    static Win32TerminalServices real;
    return real;
}

}  // namespace vagent::os
