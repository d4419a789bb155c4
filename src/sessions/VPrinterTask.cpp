#include "vagent/VPrinterTask.h"

#include <new>
#include <vector>

#include "sessions/PrinterCodecs.h"
#include "sessions/PrinterEnumeration.h"
#include "task/TaskIds.h"
#include "vagent/ErrorCodes.h"

int VPrinterTask::DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) {
    if (!PrepareResultOutputs(resultData, resultLength, "DoTask : Parameter Error")) {
        return 0;
    }
    if (taskId_ != vagent::task::kGetPrinterInfo) {
        return 0;
    }
    try {
        std::vector<_VXPrinterA> printers;
        if (vagent::EnumeratePrinter(printers) == 0) {
            return 0;
        }
        // No printers make no block, and the answer is then 0.
        return vagent::PrintInfo2Result(printers, *resultData, *resultLength);
    } catch (const std::bad_alloc&) {
        errorCode_ = vagent::kErrorNotEnoughMemory;
        return 0;
    }
}

int VPrinterTask::Result2Struct(const std::uint8_t* payload, std::uint32_t length, void* output) {
    if (!CheckResultArguments(payload, length, output)) {
        return 0;
    }
    if (taskId_ != vagent::task::kGetPrinterInfo) {
        return 0;
    }
    try {
        return vagent::Result2PrintInfo(payload, length,
                                        *static_cast<std::vector<_VXPrinterA>*>(output));
    } catch (const std::bad_alloc&) {
        errorCode_ = vagent::kErrorNotEnoughMemory;
        return 0;
    }
}
