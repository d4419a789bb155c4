#pragma once

#include <cstdint>
#include <string>

#include "os/FileSystem.h"

namespace vagent::os {

// A directory search that is closed when the scope ends, whichever way it
// ends: a walk that fails or throws half-way never leaks its search.
class ScopedFindHandle {
public:
    explicit ScopedFindHandle(FileSystem& files) : files_(files) {}
    ~ScopedFindHandle() {
        if (handle_ != kInvalidFind) {
            files_.FindClose(handle_);
        }
    }
    ScopedFindHandle(const ScopedFindHandle&) = delete;
    ScopedFindHandle& operator=(const ScopedFindHandle&) = delete;

    // Starts the search: 0 with the first entry, or the failure status.
    std::uint32_t First(const std::string& pattern, FindEntry& entry) {
        return files_.FindFirst(pattern, handle_, entry);
    }
    // 0 with the next entry, 18 at the end, or another failure status.
    std::uint32_t Next(FindEntry& entry) { return files_.FindNext(handle_, entry); }

private:
    FileSystem& files_;
    FindHandle handle_ = kInvalidFind;
};

}  // namespace vagent::os
