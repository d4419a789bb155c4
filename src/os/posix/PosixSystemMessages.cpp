#include "os/Status.h"
#include "os/SystemMessages.h"

namespace vagent::os {
namespace {

// A POSIX host has no message table of Windows codes.
class PosixSystemMessages final : public SystemMessages {
public:
    std::uint32_t MessageText(std::uint32_t, std::string&) override { return kNotSupported; }
};

}  // namespace

template <>
SystemMessages& RealFacility<SystemMessages>() {
    static PosixSystemMessages real;
    return real;
}

}  // namespace vagent::os
