#pragma once

#include "os/VersionInfo.h"

namespace vagent::files {

// The coded operating-system version that the host-version task reports:
// 1 for platform 0; 2 and 6 for 4.0 on platforms 1 and 2; 3 for 4.10; 4 for
// 4.90; 5 for 3.51; 7 for 5.0; 8 for 5.1; 9 for 5.2 and later; 0 otherwise.
int VersionCode(const os::VersionRecord& record);

}  // namespace vagent::files
