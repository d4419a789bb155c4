#pragma once

#include <cstdint>
#include <vector>

#include "vagent/FileRecords.h"

namespace vagent::files {

// The listing block: for each entry its name item, then a 4-byte item with
// the attribute in network order. The block is allocated with new[] for the
// caller to delete[].
int VecFileAttr2Result(const std::vector<FileAttrA>& entries, std::uint8_t*& block,
                       std::uint32_t& blockSize);
int Result2FileAttr(const std::uint8_t* payload, std::uint32_t length,
                    std::vector<FileAttrA>& entries);

// The existence block: for each answer two 4-byte items, exists then
// directory, in network order.
int ExistAttr2Result(const std::vector<ExistAttr>& answers, std::uint8_t*& block,
                     std::uint32_t& blockSize);
int Result2ExistAttr(const std::uint8_t* payload, std::uint32_t length,
                     std::vector<ExistAttr>& answers);

}  // namespace vagent::files
