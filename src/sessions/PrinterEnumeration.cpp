#include "sessions/PrinterEnumeration.h"

#include <cctype>
#include <cstdint>
#include <memory>
#include <new>

#include "os/Spooler.h"
#include "sessions/DecimalText.h"
#include "vagent/DllLog.h"

namespace vagent {
namespace {

// "session" in code page 936.
constexpr char kGbkSessionWord[] = "\xBB\xE1\xBB\xB0";
// Compared with its terminator, so only the whole name matches.
constexpr char kEnglishSessionName[] = "session";

// Compares the first count bytes of the zero-terminated text without regard
// to case; the text must hold at least count bytes with its terminator.
bool SameBytesIgnoringCase(const char* text, const char* expected, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        if (std::tolower(static_cast<unsigned char>(text[i])) !=
            std::tolower(static_cast<unsigned char>(expected[i]))) {
            return false;
        }
    }
    return true;
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

bool IsSessionPrinter(const std::string& printerName) {
    const char* text = printerName.c_str();
    const std::size_t available = printerName.size() + 1;
    return (available >= sizeof kGbkSessionWord - 1 &&
            SameBytesIgnoringCase(text, kGbkSessionWord, sizeof kGbkSessionWord - 1)) ||
           (available >= sizeof kEnglishSessionName &&
            SameBytesIgnoringCase(text, kEnglishSessionName, sizeof kEnglishSessionName));
}

int PrinterSessionNumber(const std::string& printerName) {
    if (!IsSessionPrinter(printerName)) {
        return 0;
    }
    const std::string name = printerName.c_str();
    std::size_t at = 0;
    while (at < name.size() && !IsDigit(name[at])) {
        ++at;
    }
    return DecimalValue(name.substr(at));
}

int EnumeratePrinter(std::vector<_VXPrinterA>& printers) {
    printers.clear();
    os::Spooler& spooler = os::Installed<os::Spooler>();
    const std::uint32_t flags = os::kPrinterEnumLocal | os::kPrinterEnumConnections;
    std::uint32_t needed = 0;
    std::vector<std::string> names;
    spooler.EnumeratePrinters(flags, os::kPrinterInfoLevel2, nullptr, 0, needed, names);
    const std::unique_ptr<std::uint8_t[]> buffer(new (std::nothrow) std::uint8_t[needed]);
    if (!buffer) {
        DllLogPrintf("EnumeratePrinter : new [%ld] bytes failed", static_cast<long>(needed));
        return 0;
    }
    // A spooler that gives nothing on the second call leaves an empty list:
    // only an exhausted allocation makes the enumeration fail.
    std::uint32_t used = 0;
    if (spooler.EnumeratePrinters(flags, os::kPrinterInfoLevel2, buffer.get(), needed, used,
                                  names) != 0) {
        return 1;
    }
    for (const std::string& name : names) {
        _VXPrinterA printer;
        printer.sessionId = PrinterSessionNumber(name);
        printer.printerName = name;
        printers.push_back(printer);
    }
    return 1;
}

}  // namespace vagent
