#pragma once

#include <string>
#include <vector>

#include "vagent/PrinterRecords.h"

namespace vagent {

// A printer redirected from a session: its name begins with the GBK word for
// "session" (BB E1 BB B0) or is "session" itself, in any case.
bool IsSessionPrinter(const std::string& printerName);
// The session a printer serves: for a session printer the first run of
// decimal digits in its name; every other printer, and a session printer
// without digits, gives 0.
int PrinterSessionNumber(const std::string& printerName);
// The server's local and connected printers in the spooler's order, each
// with its session number; 1, or 0 when the list cannot be had.
int EnumeratePrinter(std::vector<_VXPrinterA>& printers);

}  // namespace vagent
