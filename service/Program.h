#pragma once

#include <string>
#include <vector>

namespace vagent::service {

// The vagentd program: parses its command line and does what it asks.
// Returns the process's exit status: 0 done, 1 could not serve or register,
// 2 a bad command line (or install/uninstall where there is no service
// manager).
int RunProgram(const std::vector<std::string>& arguments);

}  // namespace vagent::service
