#include "os/VersionInfo.h"

#include "os/Status.h"

namespace vagent::os {
namespace {

class PosixVersionInfo final : public VersionInfo {
public:
    std::uint32_t Version(VersionRecord& /*record*/) override { return kNotSupported; }
};

}  // namespace

template <>
VersionInfo& RealFacility<VersionInfo>() {
    static PosixVersionInfo real;
    return real;
}

}  // namespace vagent::os
