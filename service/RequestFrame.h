#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vagent::service {

// One request as a client sends it: the task id, the work environment, the
// LDAP root site and the request block, its own 4-byte length prefix
// included (empty when the client queued none).
struct RequestFrame {
    std::uint32_t taskId = 0;
    std::int32_t workEnv = 0;
    std::string rootSite;
    std::vector<std::uint8_t> block;
};

}  // namespace vagent::service
