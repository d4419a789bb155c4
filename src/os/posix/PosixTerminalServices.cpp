#include "os/Status.h"
#include "os/TerminalServices.h"

namespace vagent::os {
namespace {

// A POSIX host has no terminal server.
class PosixTerminalServices final : public TerminalServices {
public:
    std::uint32_t EnumerateSessions(std::uint32_t, std::uint32_t,
                                    std::vector<SessionEntry>& sessions) override {
        sessions.clear();
        return kNotSupported;
    }
    std::uint32_t QuerySessionInformation(std::uint32_t, std::uint32_t,
                                          std::vector<std::uint8_t>& answer) override {
        answer.clear();
        return kNotSupported;
    }
    std::uint32_t LogoffSession(std::uint32_t, bool) override { return kNotSupported; }
    std::uint32_t DisconnectSession(std::uint32_t, bool) override { return kNotSupported; }
    std::uint32_t SendMessageBox(std::uint32_t, const std::string&, const std::string&,
                                 std::uint32_t, std::uint32_t, bool,
                                 std::uint32_t& response) override {
        response = 0;
        return kNotSupported;
    }
};

}  // namespace

template <>
TerminalServices& RealFacility<TerminalServices>() {
    static PosixTerminalServices real;
    return real;
}

}  // namespace vagent::os
