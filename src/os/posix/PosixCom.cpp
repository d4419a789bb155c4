#include "os/Com.h"
#include "os/Status.h"

namespace vagent::os {
namespace {

// A POSIX host has no COM: initialisation fails with "not supported" as an
// HRESULT, so callers never go on to uninitialise.
class PosixCom final : public Com {
public:
    std::int32_t Initialize() override {
        return static_cast<std::int32_t>(0x80070000u | kNotSupported);
    }
    void Uninitialize() override {}
};

}  // namespace

template <>
Com& RealFacility<Com>() {
    static PosixCom real;
    return real;
}

}  // namespace vagent::os
