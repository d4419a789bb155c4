#include "platform/Console.h"

#include "platform/win32/WindowsHeaders.h"

#include <io.h>
#include <stdio.h>

namespace vagentctl::platform {

bool IsTerminal(StandardStream stream) {
    switch (stream) {
        case StandardStream::kInput:
            return _isatty(_fileno(stdin)) != 0;
        case StandardStream::kOutput:
            return _isatty(_fileno(stdout)) != 0;
        case StandardStream::kError:
            return _isatty(_fileno(stderr)) != 0;
    }
    return false;
}

bool SetInputEcho(bool enabled) {
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    DWORD mode = 0;
    if (!GetConsoleMode(input, &mode)) {
        return false;
    }
    const bool wasOn = (mode & ENABLE_ECHO_INPUT) != 0;
    SetConsoleMode(input, enabled ? (mode | ENABLE_ECHO_INPUT) : (mode & ~ENABLE_ECHO_INPUT));
    return wasOn;
}

void PrepareConsole() {
    SetConsoleOutputCP(CP_UTF8);
    SetConsoleCP(CP_UTF8);
}

}  // namespace vagentctl::platform
