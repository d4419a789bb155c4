#pragma once

#include <cstdint>
#include <string>

// One server of the domain's server list.
struct ServerItem {
    std::wstring name;
    // 1 when the server is a primary or backup domain controller.
    std::int32_t isDomainController = 0;
};
