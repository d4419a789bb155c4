#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "os/Facilities.h"

namespace vagent::os {

// Which printers an enumeration lists, by their Windows numbers.
enum PrinterEnumFlags : std::uint32_t {
    kPrinterEnumLocal = 2,
    kPrinterEnumConnections = 4,
};

// The printers level that carries every printer's name and its details.
constexpr std::uint32_t kPrinterInfoLevel2 = 2;

// The print spooler.
class Spooler {
public:
    virtual ~Spooler() = default;
    // Mirrors EnumPrintersA with no server name, at level 2: fills the
    // caller's buffer (which may be null with capacity 0 to learn the size)
    // and sets needed to the bytes the whole answer takes. On success names
    // receives each printer's name, in the spooler's order, as the raw bytes
    // of the system's code page. Returns 0, or the failure status (122 when
    // the buffer is too small).
    virtual std::uint32_t EnumeratePrinters(std::uint32_t flags, std::uint32_t level,
                                            std::uint8_t* buffer, std::uint32_t capacity,
                                            std::uint32_t& needed,
                                            std::vector<std::string>& names) = 0;
};

template <>
Spooler& RealFacility<Spooler>();

}  // namespace vagent::os
