#include "sessions/SessionNames.h"

#include <cctype>

namespace vagent {
namespace {

constexpr char kSystemPrefix[] = "VXP#";
constexpr std::size_t kSystemPrefixLength = sizeof kSystemPrefix - 1;

}  // namespace

bool HasSystemPrefixInAnyCase(const std::string& winStationName) {
    if (winStationName.size() < kSystemPrefixLength) {
        return false;
    }
    for (std::size_t i = 0; i < kSystemPrefixLength; ++i) {
        if (std::toupper(static_cast<unsigned char>(winStationName[i])) != kSystemPrefix[i]) {
            return false;
        }
    }
    return true;
}

bool IsListedSession(const os::SessionEntry& session) {
    if (session.state == os::kSessionDisconnected) {
        return true;
    }
    return session.state == os::kSessionActive &&
           session.winStationName.compare(0, kSystemPrefixLength, kSystemPrefix) == 0;
}

}  // namespace vagent
