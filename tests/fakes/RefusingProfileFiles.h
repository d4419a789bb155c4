#pragma once

#include <cstdint>
#include <string>

#include "os/ProfileFiles.h"

namespace vagent::test {

// Profile files that cannot be read or written: reads give the caller's
// default, as for a missing file, and writes fail with access denied (5).
// Counts the calls it answered.
class RefusingProfileFiles final : public os::ProfileFiles {
public:
    static constexpr std::uint32_t kRefused = 5;

    std::uint32_t ReadInt(const std::string& section, const std::string& key,
                          std::int32_t defaultValue, const std::string& path) override;
    std::uint32_t WriteString(const std::string& section, const std::string& key,
                              const std::string& value, const std::string& path) override;

    std::uint64_t refused = 0;
};

}  // namespace vagent::test
