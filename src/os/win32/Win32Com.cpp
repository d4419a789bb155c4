#include "os/Com.h"
#include "os/win32/WindowsHeaders.h"

#include <objbase.h>

namespace vagent::os {
namespace {

class Win32Com final : public Com {
public:
    std::int32_t Initialize() override { return CoInitialize(nullptr); }
    void Uninitialize() override { CoUninitialize(); }
};

}  // namespace

template <>
Com& RealFacility<Com>() {
    static Win32Com real;
    return real;
}

}  // namespace vagent::os
