#include "vagent/ResultEncoders.h"

#include <cstring>
#include <new>

#include "task/ByteOrder.h"
#include "vagent/DllLog.h"
#include "vagent/VPrivilege.h"

namespace {

using vagent::WriteBigEndian32;

constexpr std::uint32_t kLengthFieldSize = 4;
constexpr std::uint32_t kAckBlockSize = 8;
// The whole block, prefix included, must have a size that fits 32 bits.
constexpr std::uint64_t kLargestPayload = 0xFFFFFFFFull - kLengthFieldSize;

// Writes one item (length and characters, no terminator) and returns the
// address just past it.
std::uint8_t* WriteItem(std::uint8_t* at, const std::string& text) {
    const auto length = static_cast<std::uint32_t>(text.size());
    WriteBigEndian32(at, length);
    if (length != 0) {
        std::memcpy(at + kLengthFieldSize, text.data(), length);
    }
    return at + kLengthFieldSize + length;
}

// The first pass: the payload length P of the items that forEachItem visits,
// summed in 64 bits so that an oversized input cannot wrap around.
template <typename ForEachItem>
std::uint64_t PayloadLength(ForEachItem forEachItem) {
    std::uint64_t payload = 0;
    forEachItem([&payload](const std::string& text) { payload += kLengthFieldSize + text.size(); });
    return payload;
}

// One allocation for the whole block, its prefix already written; null after
// logging when the input was empty or the block cannot be had.
std::uint8_t* NewBlock(const char* encoder, std::uint64_t payload, bool zeroed) {
    if (payload == 0) {
        DllLogPrintf("%s : Parameter Error", encoder);
        return nullptr;
    }
    std::uint8_t* block = nullptr;
    if (payload <= kLargestPayload) {
        const auto size = static_cast<std::size_t>(payload + kLengthFieldSize);
        block = zeroed ? new (std::nothrow) std::uint8_t[size]()
                       : new (std::nothrow) std::uint8_t[size];
    }
    if (block == nullptr) {
        DllLogPrintf("%s : new [%ld] bytes failed", encoder, static_cast<long>(payload));
        return nullptr;
    }
    WriteBigEndian32(block, static_cast<std::uint32_t>(payload));
    return block;
}

int HandOut(std::uint8_t* filled, std::uint64_t payload, std::uint8_t*& block,
            std::uint32_t& blockSize) {
    block = filled;
    blockSize = static_cast<std::uint32_t>(payload + kLengthFieldSize);
    return 1;
}

template <typename ForEachItem>
int Encode(const char* encoder, ForEachItem forEachItem, std::uint8_t*& block,
           std::uint32_t& blockSize) {
    const std::uint64_t payload = PayloadLength(forEachItem);
    std::uint8_t* filled = NewBlock(encoder, payload, false);
    if (filled == nullptr) {
        return 0;
    }
    std::uint8_t* at = filled + kLengthFieldSize;
    forEachItem([&at](const std::string& text) { at = WriteItem(at, text); });
    return HandOut(filled, payload, block, blockSize);
}

}  // namespace

int StrVecToResult(const std::string& head, const std::vector<std::string>& vec,
                   std::uint8_t*& block, std::uint32_t& blockSize) {
    auto items = [&head, &vec](auto&& visit) {
        visit(head);
        for (const std::string& text : vec) {
            visit(text);
        }
    };
    return Encode("StrVecToResult", items, block, blockSize);
}

int VecTStringToResult(const std::vector<std::string>& vec, std::uint8_t*& block,
                       std::uint32_t& blockSize) {
    auto items = [&vec](auto&& visit) {
        for (const std::string& text : vec) {
            visit(text);
        }
    };
    return Encode("VecTStringToResult", items, block, blockSize);
}

int VecTString2ToResult(const std::vector<std::string>& vec1, const std::vector<std::string>& vec2,
                        std::uint8_t*& block, std::uint32_t& blockSize) {
    if (vec1.size() != vec2.size()) {
        DllLogPrintf("VecTString2ToResult : vec1.size != vec2.size");
        return 0;
    }
    auto items = [&vec1, &vec2](auto&& visit) {
        for (std::size_t i = 0; i < vec1.size(); ++i) {
            visit(vec1[i]);
            visit(vec2[i]);
        }
    };
    return Encode("VecTString2ToResult", items, block, blockSize);
}

int VecTString3ToResult(const std::vector<std::string>& vec1, const std::vector<std::string>& vec2,
                        const std::vector<std::string>& vec3, std::uint8_t*& block,
                        std::uint32_t& blockSize) {
    if (vec1.size() != vec2.size() || vec2.size() != vec3.size()) {
        DllLogPrintf("vec1.size != vec2.size || vec2.size != vec3.size");
        return 0;
    }
    auto items = [&vec1, &vec2, &vec3](auto&& visit) {
        for (std::size_t i = 0; i < vec1.size(); ++i) {
            visit(vec1[i]);
            visit(vec2[i]);
            visit(vec3[i]);
        }
    };
    return Encode("VecTString3ToResult", items, block, blockSize);
}

int VecUser2Result(const std::vector<_VXUserInfoA>& users, std::uint8_t*& block,
                   std::uint32_t& blockSize) {
    auto items = [&users](auto&& visit) {
        for (const _VXUserInfoA& user : users) {
            visit(user.name);
            visit(user.comment);
        }
    };
    return Encode("VecUser2Result", items, block, blockSize);
}

int VecUserGroup2Result(const std::vector<_VXUserGroupA>& groups, std::uint8_t*& block,
                        std::uint32_t& blockSize) {
    auto items = [&groups](auto&& visit) {
        for (const _VXUserGroupA& group : groups) {
            visit(group.name);
        }
    };
    return Encode("VecUserGroup2Result", items, block, blockSize);
}

int Privilege2Result(const std::vector<VPrivilege*>& privileges, std::uint8_t*& block,
                     std::uint32_t& blockSize) {
    auto items = [&privileges](auto&& visit) {
        for (const VPrivilege* privilege : privileges) {
            if (privilege == nullptr) {
                continue;
            }
            for (const std::string& name : privilege->names) {
                visit(name);
            }
        }
    };
    const std::uint64_t payload = PayloadLength(items);
    // Zeroed, because the bytes after the last name are never written.
    std::uint8_t* filled = NewBlock("Privilege2Result", payload, true);
    if (filled == nullptr) {
        return 0;
    }
    // Deployed peers exchange this exact layout: the write position moves past
    // the length field only, so each length field overwrites the first 4 bytes
    // of the name before it.
    std::uint8_t* at = filled + kLengthFieldSize;
    items([&at](const std::string& name) {
        WriteItem(at, name);
        at += kLengthFieldSize;
    });
    return HandOut(filled, payload, block, blockSize);
}

int Ack2Result(std::uint32_t value, std::uint8_t*& block, std::uint32_t& blockSize) {
    auto* filled = new (std::nothrow) std::uint8_t[kAckBlockSize];
    if (filled == nullptr) {
        DllLogPrintf("Ack2Result : new [%d] bytes failed", static_cast<int>(kAckBlockSize));
        return 0;
    }
    WriteBigEndian32(filled, kAckBlockSize - kLengthFieldSize);
    WriteBigEndian32(filled + kLengthFieldSize, value);
    block = filled;
    blockSize = kAckBlockSize;
    return 1;
}
