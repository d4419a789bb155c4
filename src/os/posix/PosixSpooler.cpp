#include "os/Spooler.h"
#include "os/Status.h"

namespace vagent::os {
namespace {

// A POSIX host has no print spooler.
class PosixSpooler final : public Spooler {
public:
    std::uint32_t EnumeratePrinters(std::uint32_t, std::uint32_t, std::uint8_t*, std::uint32_t,
                                    std::uint32_t& needed,
                                    std::vector<std::string>& names) override {
        needed = 0;
        names.clear();
        return kNotSupported;
    }
};

}  // namespace

template <>
Spooler& RealFacility<Spooler>() {
    static PosixSpooler real;
    return real;
}

}  // namespace vagent::os
