#include "platform/ProgramArguments.h"

namespace vagentctl::platform {

// The arguments arrive as the terminal typed them: UTF-8.
std::vector<std::string> ProgramArguments(int argc, char** argv) {
    return std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc);
}

}  // namespace vagentctl::platform
