#include "fakes/FakeSpooler.h"

#include <gtest/gtest.h>

#include <cstring>

#include "os/Status.h"

namespace vagent::test {

std::uint32_t FakeSpooler::Needed() const {
    std::uint32_t needed = 0;
    for (const std::string& name : printers) {
        needed += kEntrySize + static_cast<std::uint32_t>(name.size()) + 1;
    }
    return needed;
}

std::uint32_t FakeSpooler::EnumeratePrinters(std::uint32_t flags, std::uint32_t level,
                                             std::uint8_t* buffer, std::uint32_t capacity,
                                             std::uint32_t& needed,
                                             std::vector<std::string>& names) {
    calls.push_back(Call{flags, level, buffer != nullptr, capacity});
    names.clear();
    if (level != os::kPrinterInfoLevel2) {
        ADD_FAILURE() << "the fake spooler answers level 2 only, not " << level;
        return os::kInvalidParameter;
    }
    if (failure != 0) {
        needed = 0;
        return failure;
    }
    needed = Needed();
    if (buffer != nullptr && fillFailure != 0) {
        return fillFailure;
    }
    if (capacity < needed) {
        return os::kInsufficientBuffer;
    }
    // The caller's buffer receives the answer, as the real spooler writes
    // into it; a buffer shorter than claimed shows up in the sanitised build.
    if (needed != 0) {
        std::memset(buffer, 0xA5, needed);
    }
    names = printers;
    return 0;
}

}  // namespace vagent::test
