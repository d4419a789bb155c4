#pragma once

#include <cstdint>

#include "vagent/Export.h"
#include "vagent/PrinterRecords.h"
#include "vagent/VTask.h"

// The printer task (27): the server's printers with the session each serves.
// Result2Struct's output is a std::vector<_VXPrinterA>.
class VAGENT_API VPrinterTask : public VTask {
public:
    explicit VPrinterTask(std::uint32_t taskId) : VTask(taskId) {}

    int Result2Struct(const std::uint8_t* payload, std::uint32_t length, void* output) override;
    int DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) override;
};
