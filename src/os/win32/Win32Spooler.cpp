#include "os/Spooler.h"
#include "os/win32/WindowsHeaders.h"

#include <winspool.h>

namespace vagent::os {
namespace {

class Win32Spooler final : public Spooler {
public:
    std::uint32_t EnumeratePrinters(std::uint32_t flags, std::uint32_t level, std::uint8_t* buffer,
                                    std::uint32_t capacity, std::uint32_t& needed,
                                    std::vector<std::string>& names) override {
        names.clear();
        if (level != kPrinterInfoLevel2) {
            return ERROR_INVALID_LEVEL;
        }
        DWORD bytesNeeded = 0;
        DWORD returned = 0;
        const BOOL listed =
            EnumPrintersA(flags, nullptr, level, buffer, capacity, &bytesNeeded, &returned);
        needed = bytesNeeded;
        if (!listed) {
            const DWORD status = GetLastError();
            return status != ERROR_SUCCESS ? status : ERROR_GEN_FAILURE;
        }
        const auto* printers = reinterpret_cast<const PRINTER_INFO_2A*>(buffer);
        for (DWORD i = 0; printers != nullptr && i < returned; ++i) {
            names.emplace_back(printers[i].pPrinterName != nullptr ? printers[i].pPrinterName : "");
        }
        return 0;
    }
};

}  // namespace

template <>
Spooler& RealFacility<Spooler>() {
    static Win32Spooler real;
    return real;
}

}  // namespace vagent::os
