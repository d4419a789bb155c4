#pragma once

#include <cstdint>
#include <vector>

#include "vagent/SessionRecords.h"

namespace vagent {

// The session count block: 00 00 00 04 and the count, big-endian.
int SessionCount2Result(int count, std::uint8_t*& block, std::uint32_t& blockSize);
// The session info block: five items per record (the id as a 4-byte
// big-endian item, info1, macAddress, info3, clientAddress). Fails for an
// empty vector.
int SessionInfo2Result(const std::vector<_VXSessionA>& sessions, std::uint8_t*& block,
                       std::uint32_t& blockSize);
// The count from a count block's payload; 1 when it is 0 or more.
int Result2SessionCount(const std::uint8_t* payload, std::uint32_t length, int& count);
// The records of a session info block's payload; a trailing incomplete record
// is dropped.
int Result2SessionInfo(const std::uint8_t* payload, std::uint32_t length,
                       std::vector<_VXSessionA>& sessions);

}  // namespace vagent
