#include <iostream>

#include "Vagentctl.h"
#include "platform/Console.h"
#include "platform/ProgramArguments.h"

int main(int argc, char** argv) {
    using vagentctl::platform::IsTerminal;
    using vagentctl::platform::StandardStream;
    vagentctl::platform::PrepareConsole();
    vagentctl::ConsoleStreams console{std::cin, std::cout, std::cerr,
                                      IsTerminal(StandardStream::kInput),
                                      IsTerminal(StandardStream::kError)};
    return vagentctl::RunVagentctl(vagentctl::platform::ProgramArguments(argc, argv), console);
}
