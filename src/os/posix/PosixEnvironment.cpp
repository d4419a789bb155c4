#include "os/Environment.h"

#include "os/Status.h"

namespace vagent::os {
namespace {

class PosixEnvironment final : public Environment {
public:
    std::uint32_t Value(const std::string& /*name*/, std::string& /*value*/) override {
        return kNotSupported;
    }
};

}  // namespace

template <>
Environment& RealFacility<Environment>() {
    static PosixEnvironment real;
    return real;
}

}  // namespace vagent::os
