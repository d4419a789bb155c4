#pragma once

#include <cstdint>

// The request a task executes: six words, the third pointing at one request
// block as it was sent, its own 4-byte length prefix included.
struct TaskRequest {
    std::uint32_t reserved0 = 0;    // the service's own; no task reads it
    std::uint32_t length = 0;       // bytes at data
    std::uint8_t* data = nullptr;   // the request block
    std::uint32_t reserved3 = 0;    // the service's own; no task reads it
    std::uint32_t reserved4 = 0;    // the service's own; no task reads it
    std::uintptr_t connection = 0;  // the socket on which the request arrived
};
