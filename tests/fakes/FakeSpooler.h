#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "os/Spooler.h"

namespace vagent::test {

// A spooler with the printers the test names, as raw bytes of the system's
// code page; answers the size query as the real one does and records every
// call.
class FakeSpooler final : public os::Spooler {
public:
    struct Call {
        std::uint32_t flags;
        std::uint32_t level;
        bool withBuffer;
        std::uint32_t capacity;
    };

    // Bytes each printer takes in the answer besides its name.
    static constexpr std::uint32_t kEntrySize = 88;

    std::uint32_t EnumeratePrinters(std::uint32_t flags, std::uint32_t level, std::uint8_t* buffer,
                                    std::uint32_t capacity, std::uint32_t& needed,
                                    std::vector<std::string>& names) override;

    std::uint32_t Needed() const;

    std::vector<std::string> printers;
    // Fails every call with this status.
    std::uint32_t failure = 0;
    // Fails only the call that brings a buffer, after a good size query.
    std::uint32_t fillFailure = 0;
    std::vector<Call> calls;
};

}  // namespace vagent::test
