#pragma once

#include "os/VersionInfo.h"

namespace vagent::test {

// The version record the test sets, or a failure.
class FakeVersionInfo final : public os::VersionInfo {
public:
    std::uint32_t Version(os::VersionRecord& found) override {
        if (status != 0) {
            return status;
        }
        found = record;
        return 0;
    }

    os::VersionRecord record{6, 1, 7601, 2};
    std::uint32_t status = 0;
};

}  // namespace vagent::test
