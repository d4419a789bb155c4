#pragma once

#include "CommandContext.h"
#include "GlobalOptions.h"
#include "HostList.h"

namespace vagentctl {

// One host's part of a run: its name resolved to the dotted address the
// facade takes, an agent built for it, and the operation run on it. Nothing
// thrown leaves: a name that does not resolve or a text that the code page
// cannot hold becomes that host's error.
HostOutcome RunOnHost(const HostSpec& host, const GlobalOptions& options,
                      const HostOperation& operation);

}  // namespace vagentctl
