#pragma once

#include <cstdint>

#include "os/win32/WindowsHeaders.h"

namespace vagent::os {

// Owns memory from LocalAlloc, or memory that a system call allocated that
// way on the caller's behalf (FormatMessageA with
// FORMAT_MESSAGE_ALLOCATE_BUFFER), and frees it with LocalFree on every way
// out, including a copy out of it that throws.
class LocalMemory {
public:
    LocalMemory() = default;
    explicit LocalMemory(std::uint32_t size) : memory_(LocalAlloc(LPTR, size)) {}
    ~LocalMemory() { Free(); }
    LocalMemory(const LocalMemory&) = delete;
    LocalMemory& operator=(const LocalMemory&) = delete;

    void* Get() const { return memory_; }
    // Where a call that allocates the buffer itself stores its address.
    HLOCAL* Receive() {
        Free();
        return &memory_;
    }

private:
    void Free() {
        if (memory_ != nullptr) {
            LocalFree(memory_);
            memory_ = nullptr;
        }
    }

    HLOCAL memory_ = nullptr;
};

}  // namespace vagent::os
