#pragma once

#include <iosfwd>

namespace vagentctl {

// The program's three streams, and whether standard input and standard
// error are terminals (a prompt without echo, a progress bar).
struct ConsoleStreams {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool inputIsTerminal = false;
    bool errorIsTerminal = false;
};

}  // namespace vagentctl
