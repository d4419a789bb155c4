#pragma once

#include <string>
#include <vector>

#include "ConsoleStreams.h"

namespace vagentctl {

// The vagentctl program: parses the arguments (without the program's name),
// runs the chosen command on every host and prints the outcomes. Returns
// the exit status: 0 when every host succeeded, 1 when any failed, 2 for a
// usage error.
int RunVagentctl(const std::vector<std::string>& arguments, ConsoleStreams& console);

}  // namespace vagentctl
