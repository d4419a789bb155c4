#pragma once

#include <string>

// One printer of the server and the terminal session it serves (0 when its
// name names none).
struct _VXPrinterA {
    int sessionId = 0;
    std::string printerName;
};

struct _VXPrinterW {
    int sessionId = 0;
    std::wstring printerName;
};
