#include "platform/Console.h"

#include <termios.h>
#include <unistd.h>

namespace vagentctl::platform {

bool IsTerminal(StandardStream stream) {
    switch (stream) {
        case StandardStream::kInput:
            return isatty(STDIN_FILENO) == 1;
        case StandardStream::kOutput:
            return isatty(STDOUT_FILENO) == 1;
        case StandardStream::kError:
            return isatty(STDERR_FILENO) == 1;
    }
    return false;
}

bool SetInputEcho(bool enabled) {
    termios settings{};
    if (tcgetattr(STDIN_FILENO, &settings) != 0) {
        return false;
    }
    const bool wasOn = (settings.c_lflag & ECHO) != 0;
    if (enabled) {
        settings.c_lflag |= ECHO;
    } else {
        settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    }
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &settings);
    return wasOn;
}

// Terminals here take UTF-8 as they are.
void PrepareConsole() {}

}  // namespace vagentctl::platform
