#pragma once

namespace vagentctl::platform {

enum class StandardStream { kInput, kOutput, kError };

// Whether the process's stream is an interactive terminal.
bool IsTerminal(StandardStream stream);

// Turns the echo of typed characters on standard input on or off; returns
// whether it was on before, so that the caller can put it back.
bool SetInputEcho(bool enabled);

// Makes the console show the program's UTF-8 output as UTF-8.
void PrepareConsole();

}  // namespace vagentctl::platform
