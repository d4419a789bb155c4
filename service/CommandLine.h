#pragma once

#include <string>
#include <vector>

#include "Server.h"

namespace vagent::service {

// What the program was asked to do.
enum class Action {
    Run,         // serve in the foreground
    Install,     // register with the service manager
    Uninstall,   // remove the registration
    Service,     // serve under the service manager (the registered command)
    Help,        // print text and succeed
    Version,     // print text and succeed
    UsageError,  // print text and exit with status 2
};

struct Command {
    Action action = Action::UsageError;
    ServerOptions options;
    // The serving options exactly as given, for the registered command line.
    std::vector<std::string> serverArguments;
    // The help or version text, or what was wrong with the command line.
    std::string text;
};

// The program's arguments, without its own name:
//   run|install|service [--listen ADDR:PORT] [--allow CIDR]... [--workers N]
//                       [--max-connections N] [--max-block BYTES]
//                       [--max-held-bytes BYTES]
//   uninstall | --help | --version
Command ParseCommandLine(const std::vector<std::string>& arguments);

}  // namespace vagent::service
