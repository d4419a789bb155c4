#pragma once

namespace vagent::service {

// The version of the service program, as --version and the log show it.
const char* VagentdVersion();

}  // namespace vagent::service
