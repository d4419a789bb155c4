#pragma once

namespace vagent::service::platform {

// Ctrl-C and termination requests to the program serving in the foreground
// (SIGINT and SIGTERM on POSIX; the console's control events on Windows).

// Takes the requests over from their default action (ending the process) and
// makes a peer that goes away mid-send fail the send instead of ending the
// process. Called once, before any other thread starts, so that the threads
// started later inherit the arrangement.
void ArmStopRequests();
// Blocks until a stop has been requested.
void WaitForStopRequest();

}  // namespace vagent::service::platform
