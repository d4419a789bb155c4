#include "vagent/ResultDecoders.h"

#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <utility>

#include "task/ByteOrder.h"
#include "vagent/DataItemCursor.h"
#include "vagent/DllLog.h"
#include "vagent/VPrivilege.h"

namespace {

constexpr std::uint32_t kAckPayloadSize = 4;
// The user decoder's fixed scratch space: 1,027 characters and a terminator.
constexpr std::uint32_t kUserScratchSize = 1028;

// The decoder loop: hands each item, as the zero-terminated text it holds, to
// assign together with its index. Returns 1 at the end of the payload, and 0
// after logging the decoder's own text when an item breaks the payload or
// does not fit the scratch space.
template <typename Assign>
int DecodeItems(const char* decoder, const std::uint8_t* payload, std::uint32_t size, char* scratch,
                std::uint64_t scratchSize, Assign assign) {
    DataItemCursor cursor(payload, size);
    for (std::uint32_t index = 0;; ++index) {
        std::uint32_t length = 0;
        const std::uint8_t* item = cursor.GetNextDataItem(length);
        if (item == nullptr && length == 0) {
            return 1;
        }
        if (item == nullptr || length >= scratchSize) {
            DllLogPrintf("%s : Data Format Error", decoder);
            return 0;
        }
        std::memcpy(scratch, item, length);
        scratch[length] = '\0';
        assign(index, std::string(scratch));
    }
}

// Decodes through a scratch buffer sized to the whole payload and its
// terminator. The outputs are cleared only once the buffer is had, so a
// decoder whose outputs must survive an allocation failure clears them in
// clear; the others clear them before calling and pass kClearedBefore.
template <typename Clear, typename Assign>
int DecodeWithScratch(const char* decoder, const std::uint8_t* payload, std::uint32_t size,
                      Clear clear, Assign assign) {
    const std::uint64_t scratchSize = std::uint64_t{size} + 1;
    const std::unique_ptr<char[]> scratch(
        new (std::nothrow) char[static_cast<std::size_t>(scratchSize)]);
    if (!scratch) {
        return 0;
    }
    clear();
    return DecodeItems(decoder, payload, size, scratch.get(), scratchSize, assign);
}

const auto kClearedBefore = [] {};

// The number of whole items before the payload ends or breaks; only read to
// size the outputs once, so it walks the length fields without logging.
std::size_t CountItems(const std::uint8_t* payload, std::uint32_t size) {
    std::size_t count = 0;
    std::uint32_t at = 0;
    while (size - at >= 4) {
        const std::uint32_t length = vagent::ReadBigEndian32(payload + at);
        if (length > size - at - 4) {
            break;
        }
        at += 4 + length;
        ++count;
    }
    return count;
}

// Makes room for the records a payload holds, sparing the regrowth of large
// lists. Room that cannot be had is no failure: the records still fit one by
// one.
template <typename Records>
void ReserveFor(Records& records, std::size_t count) {
    try {
        records.reserve(count);
    } catch (const std::exception&) {
        return;
    }
}

}  // namespace

int Data2VecTString(const std::uint8_t* payload, std::uint32_t size,
                    std::vector<std::string>& vec) {
    return DecodeWithScratch(
        "Data2VecTString", payload, size,
        [&vec, payload, size] {
            vec.clear();
            ReserveFor(vec, CountItems(payload, size));
        },
        [&vec](std::uint32_t, std::string text) { vec.push_back(std::move(text)); });
}

int Data2VecTString2(const std::uint8_t* payload, std::uint32_t size,
                     std::vector<std::string>& vec1, std::vector<std::string>& vec2) {
    std::string first;
    return DecodeWithScratch(
        "Data2VecTString2", payload, size,
        [&vec1, &vec2] {
            vec1.clear();
            vec2.clear();
        },
        [&vec1, &vec2, &first](std::uint32_t index, std::string text) {
            if (index % 2 == 0) {
                first = std::move(text);
                return;
            }
            vec1.push_back(std::move(first));
            vec2.push_back(std::move(text));
        });
}

int Data2VecTString3(const std::uint8_t* payload, std::uint32_t size,
                     std::vector<std::string>& vec1, std::vector<std::string>& vec2,
                     std::vector<std::string>& vec3) {
    vec1.clear();
    vec2.clear();
    vec3.clear();
    std::string first;
    std::string second;
    return DecodeWithScratch(
        "Data2VecTString3", payload, size, kClearedBefore,
        [&vec1, &vec2, &vec3, &first, &second](std::uint32_t index, std::string text) {
            switch (index % 3) {
                case 0:
                    first = std::move(text);
                    break;
                case 1:
                    second = std::move(text);
                    break;
                default:
                    vec1.push_back(std::move(first));
                    vec2.push_back(std::move(second));
                    vec3.push_back(std::move(text));
                    break;
            }
        });
}

int Data2VecUser(const std::uint8_t* payload, std::uint32_t size,
                 std::vector<_VXUserInfoA>& users) {
    users.clear();
    ReserveFor(users, CountItems(payload, size) / 2);
    char scratch[kUserScratchSize];
    _VXUserInfoA user;
    return DecodeItems("Data2VecUser", payload, size, scratch, kUserScratchSize,
                       [&users, &user](std::uint32_t index, std::string text) {
                           if (index % 2 == 0) {
                               user.name = std::move(text);
                               return;
                           }
                           user.comment = std::move(text);
                           users.push_back(std::move(user));
                       });
}

int Data2VecUserGroup(const std::uint8_t* payload, std::uint32_t size,
                      std::vector<_VXUserGroupA>& groups) {
    groups.clear();
    return DecodeWithScratch("Data2VecUserGroup", payload, size, kClearedBefore,
                             [&groups](std::uint32_t, std::string text) {
                                 groups.push_back(_VXUserGroupA{std::move(text)});
                             });
}

int Data2GroupUser(const std::uint8_t* payload, std::uint32_t size, std::string& group,
                   std::vector<std::string>& users) {
    users.clear();
    return DecodeWithScratch("Data2GroupUser", payload, size, kClearedBefore,
                             [&group, &users](std::uint32_t index, std::string text) {
                                 if (index == 0) {
                                     group = std::move(text);
                                 } else {
                                     users.push_back(std::move(text));
                                 }
                             });
}

int Data2Privilege(const std::uint8_t* payload, std::uint32_t size, std::string& head,
                   VPrivilege& privilege) {
    privilege.names.clear();
    return DecodeWithScratch("Data2Privilege", payload, size, kClearedBefore,
                             [&head, &privilege](std::uint32_t index, std::string text) {
                                 if (index == 0) {
                                     head = std::move(text);
                                 } else {
                                     privilege.names.push_back(std::move(text));
                                 }
                             });
}

int Result2Privilege(const std::uint8_t* payload, std::uint32_t size,
                     std::vector<VPrivilege*>& privileges) {
    std::unique_ptr<VPrivilege> privilege(new (std::nothrow) VPrivilege);
    if (!privilege) {
        DllLogPrintf("Result2Privilege : new VPrivilege falied");
        return 0;
    }
    std::string dropped;
    if (!Data2Privilege(payload, size, dropped, *privilege)) {
        return 0;
    }
    privileges.push_back(privilege.get());
    privilege.release();
    return 1;
}

int Result2Ack(const std::uint8_t* payload, std::uint32_t size, std::uint32_t& value) {
    if (size != kAckPayloadSize) {
        DllLogPrintf("Result2Ack : dwData != sizeof DWORD ");
        return 0;
    }
    value = vagent::ReadBigEndian32(payload);
    return 1;
}
