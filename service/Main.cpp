#include <string>
#include <vector>

#include "Program.h"

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    return vagent::service::RunProgram(arguments);
}
