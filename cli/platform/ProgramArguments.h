#pragma once

#include <string>
#include <vector>

namespace vagentctl::platform {

// The program's arguments after its own name, as UTF-8 text.
std::vector<std::string> ProgramArguments(int argc, char** argv);

}  // namespace vagentctl::platform
