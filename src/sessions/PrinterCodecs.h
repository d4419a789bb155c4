#pragma once

#include <cstdint>
#include <vector>

#include "vagent/PrinterRecords.h"

namespace vagent {

// The printer block: two items per record (the session number as a 4-byte
// big-endian item, the name). Fails for an empty vector.
int PrintInfo2Result(const std::vector<_VXPrinterA>& printers, std::uint8_t*& block,
                     std::uint32_t& blockSize);
// The records of a printer block's payload; a number without its name is
// dropped.
int Result2PrintInfo(const std::uint8_t* payload, std::uint32_t length,
                     std::vector<_VXPrinterA>& printers);

}  // namespace vagent
