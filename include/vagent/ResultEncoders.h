#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vagent/Export.h"
#include "vagent/UserRecords.h"

class VPrivilege;

// Each encoder builds a whole result block: a 4-byte big-endian payload
// length P, then the items, each a 4-byte big-endian length and the string's
// characters without terminator. On success block holds P + 4 bytes,
// allocated with new[] for the caller to delete[], and the result is 1.
VAGENT_API int StrVecToResult(const std::string& head, const std::vector<std::string>& vec,
                              std::uint8_t*& block, std::uint32_t& blockSize);
VAGENT_API int VecTStringToResult(const std::vector<std::string>& vec, std::uint8_t*& block,
                                  std::uint32_t& blockSize);
VAGENT_API int VecTString2ToResult(const std::vector<std::string>& vec1,
                                   const std::vector<std::string>& vec2, std::uint8_t*& block,
                                   std::uint32_t& blockSize);
VAGENT_API int VecTString3ToResult(const std::vector<std::string>& vec1,
                                   const std::vector<std::string>& vec2,
                                   const std::vector<std::string>& vec3, std::uint8_t*& block,
                                   std::uint32_t& blockSize);
VAGENT_API int VecUser2Result(const std::vector<_VXUserInfoA>& users, std::uint8_t*& block,
                              std::uint32_t& blockSize);
VAGENT_API int VecUserGroup2Result(const std::vector<_VXUserGroupA>& groups, std::uint8_t*& block,
                                   std::uint32_t& blockSize);
VAGENT_API int Privilege2Result(const std::vector<VPrivilege*>& privileges, std::uint8_t*& block,
                                std::uint32_t& blockSize);
// The 8-byte acknowledgement block: 00 00 00 04 and the value, big-endian.
VAGENT_API int Ack2Result(std::uint32_t value, std::uint8_t*& block, std::uint32_t& blockSize);
