#pragma once

#include "vagent/Export.h"

class VLog;

// Installs the log that every module of the library writes to (null
// uninstalls). The library never owns or deletes it; the host keeps it alive
// while it is installed.
VAGENT_API void SetDllLog(VLog* log);

// The program-wide logging entry: formats the message, prints it and writes
// it through the installed log at level 2, type 2. Does nothing and returns 0
// while no log is installed.
VAGENT_API int DllLogPrintf(const char* format, ...) VAGENT_PRINTF_FORMAT(1, 2);
