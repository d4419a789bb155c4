// Feeds arbitrary payloads to every decoder: the first byte chooses the
// decoder, the rest is the payload.
#include <cstdint>
#include <string>
#include <vector>

#include "DecoderChoice.h"
#include "vagent/ResultDecoders.h"
#include "vagent/VPrivilege.h"

namespace {

void DecodeStrings(const std::uint8_t* payload, std::uint32_t size) {
    std::vector<std::string> vec;
    Data2VecTString(payload, size, vec);
}

void DecodePairs(const std::uint8_t* payload, std::uint32_t size) {
    std::vector<std::string> vec1;
    std::vector<std::string> vec2;
    Data2VecTString2(payload, size, vec1, vec2);
}

void DecodeTriples(const std::uint8_t* payload, std::uint32_t size) {
    std::vector<std::string> vec1;
    std::vector<std::string> vec2;
    std::vector<std::string> vec3;
    Data2VecTString3(payload, size, vec1, vec2, vec3);
}

void DecodeUsers(const std::uint8_t* payload, std::uint32_t size) {
    std::vector<_VXUserInfoA> users;
    Data2VecUser(payload, size, users);
}

void DecodeUserGroups(const std::uint8_t* payload, std::uint32_t size) {
    std::vector<_VXUserGroupA> groups;
    Data2VecUserGroup(payload, size, groups);
}

void DecodeGroupUsers(const std::uint8_t* payload, std::uint32_t size) {
    std::string group;
    std::vector<std::string> users;
    Data2GroupUser(payload, size, group, users);
}

void DecodePrivilege(const std::uint8_t* payload, std::uint32_t size) {
    std::string head;
    VPrivilege privilege;
    Data2Privilege(payload, size, head, privilege);
}

void DecodePrivilegeList(const std::uint8_t* payload, std::uint32_t size) {
    std::vector<VPrivilege*> privileges;
    Result2Privilege(payload, size, privileges);
    for (VPrivilege* privilege : privileges) {
        delete privilege;
    }
}

void DecodeAck(const std::uint8_t* payload, std::uint32_t size) {
    std::uint32_t value = 0;
    Result2Ack(payload, size, value);
}

using vagent::fuzz::Decoder;

constexpr Decoder kDecoders[] = {DecodeStrings,   DecodePairs,         DecodeTriples,
                                 DecodeUsers,     DecodeUserGroups,    DecodeGroupUsers,
                                 DecodePrivilege, DecodePrivilegeList, DecodeAck};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return vagent::fuzz::DecodeWithChosen(kDecoders, data, size);
}
