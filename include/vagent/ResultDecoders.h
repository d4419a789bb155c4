#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vagent/Export.h"
#include "vagent/UserRecords.h"

class VPrivilege;

// Each decoder takes a result block's payload (without its 4-byte length
// prefix) and rebuilds what the matching encoder was given. An item that
// holds a zero byte is cut there. On a malformed payload the decoder returns
// 0 and keeps what it had appended before the bad item.
VAGENT_API int Data2VecTString(const std::uint8_t* payload, std::uint32_t size,
                               std::vector<std::string>& vec);
VAGENT_API int Data2VecTString2(const std::uint8_t* payload, std::uint32_t size,
                                std::vector<std::string>& vec1, std::vector<std::string>& vec2);
VAGENT_API int Data2VecTString3(const std::uint8_t* payload, std::uint32_t size,
                                std::vector<std::string>& vec1, std::vector<std::string>& vec2,
                                std::vector<std::string>& vec3);
VAGENT_API int Data2VecUser(const std::uint8_t* payload, std::uint32_t size,
                            std::vector<_VXUserInfoA>& users);
VAGENT_API int Data2VecUserGroup(const std::uint8_t* payload, std::uint32_t size,
                                 std::vector<_VXUserGroupA>& groups);
VAGENT_API int Data2GroupUser(const std::uint8_t* payload, std::uint32_t size, std::string& group,
                              std::vector<std::string>& users);
VAGENT_API int Data2Privilege(const std::uint8_t* payload, std::uint32_t size, std::string& head,
                              VPrivilege& privilege);
VAGENT_API int Result2Privilege(const std::uint8_t* payload, std::uint32_t size,
                                std::vector<VPrivilege*>& privileges);
// The payload of an acknowledgement: exactly 4 bytes, big-endian.
VAGENT_API int Result2Ack(const std::uint8_t* payload, std::uint32_t size, std::uint32_t& value);
