#include <ctime>

#include "os/Clock.h"

namespace vagent::os {
namespace {

class PosixClock final : public Clock {
public:
    std::int64_t SecondsSinceEpoch() override {
        return static_cast<std::int64_t>(std::time(nullptr));
    }
};

}  // namespace

template <>
Clock& RealFacility<Clock>() {
    static PosixClock real;
    return real;
}

}  // namespace vagent::os
