#pragma once

#include <string>

// One terminal session as the host program knows it: the session table's
// entry. info1 and info3 are the host's own texts, passed through unchanged.
struct _VXSessionA {
    int sessionId = 0;
    std::string info1;
    std::string macAddress;  // the client's MAC address as text
    std::string info3;
    std::string clientAddress;  // the client's IPv4 address, dotted
};

struct _VXSessionW {
    int sessionId = 0;
    std::wstring info1;
    std::wstring macAddress;
    std::wstring info3;
    std::wstring clientAddress;
};
