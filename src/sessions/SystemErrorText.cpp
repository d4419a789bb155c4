#include "sessions/SystemErrorText.h"

#include <mutex>

#include "os/SystemMessages.h"

namespace vagent {

std::string SystemErrorText(std::uint32_t code) {
    // Guarded, since the tasks of several connections may fail at once.
    static std::mutex lock;
    static std::string kept;
    std::string text;
    const std::uint32_t status = os::Installed<os::SystemMessages>().MessageText(code, text);
    std::lock_guard<std::mutex> hold(lock);
    if (status == 0) {
        kept = text;
    }
    return kept;
}

}  // namespace vagent
