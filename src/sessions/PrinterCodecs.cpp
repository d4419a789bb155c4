#include "sessions/PrinterCodecs.h"

#include "task/ByteOrder.h"
#include "task/ItemBlock.h"
#include "vagent/DataItemCursor.h"
#include "vagent/DllLog.h"

namespace vagent {
namespace {

constexpr std::uint32_t kNumberItemLength = 4;

}  // namespace

int PrintInfo2Result(const std::vector<_VXPrinterA>& printers, std::uint8_t*& block,
                     std::uint32_t& blockSize) {
    std::uint64_t payload = 0;
    for (const _VXPrinterA& printer : printers) {
        payload += ItemBlock::ItemSize(kNumberItemLength) +
                   ItemBlock::ItemSize(printer.printerName.size());
    }
    if (payload == 0) {
        DllLogPrintf("PrintInfo2Result : dwSize = [%ld]", 0L);
        return 0;
    }
    ItemBlock filled;
    if (!filled.Allocate(payload)) {
        DllLogPrintf("PrintInfo2Result : new [%ld] bytes failed", static_cast<long>(payload));
        return 0;
    }
    for (const _VXPrinterA& printer : printers) {
        filled.PutNumber(printer.sessionId);
        filled.PutText(printer.printerName);
    }
    block = filled.Release(blockSize);
    return 1;
}

int Result2PrintInfo(const std::uint8_t* payload, std::uint32_t length,
                     std::vector<_VXPrinterA>& printers) {
    DataItemCursor cursor(payload, length);
    _VXPrinterA printer;
    for (std::uint32_t index = 0;; ++index) {
        std::uint32_t itemLength = 0;
        const std::uint8_t* item = cursor.GetNextDataItem(itemLength);
        if (item == nullptr && itemLength == 0) {
            return 1;
        }
        const bool isNumber = index % 2 == 0;
        // A number item of any other size than 4 is as malformed as an
        // overrun.
        if (item == nullptr || (isNumber && itemLength != kNumberItemLength)) {
            DllLogPrintf("Result2PrintInfo : Data Format Error");
            return 0;
        }
        if (isNumber) {
            printer.sessionId = static_cast<int>(ReadBigEndian32(item));
        } else {
            printer.printerName.assign(reinterpret_cast<const char*>(item), itemLength);
            printers.push_back(printer);
        }
    }
}

}  // namespace vagent
