#include "files/ListingCodecs.h"

#include <algorithm>

#include "task/ByteOrder.h"
#include "task/ItemBlock.h"
#include "vagent/DataItemCursor.h"
#include "vagent/DllLog.h"

namespace vagent::files {
namespace {

constexpr std::uint32_t kFieldSize = 4;
// Every record's number item: its length field and its 4 bytes.
constexpr std::uint32_t kNumberItemSize = 8;
// The name buffer of a listing decode: 1,027 characters and a terminator.
constexpr std::uint32_t kNameBufferSize = 1028;

// One allocation of the whole block with its prefix written; false after the
// encoder's allocation message, which names P + 4.
bool AllocateBlock(ItemBlock& block, const char* encoder, std::uint64_t payload) {
    if (!block.Allocate(payload)) {
        DllLogPrintf("%s : new [%d] bytes failed", encoder, static_cast<int>(payload + kFieldSize));
        return false;
    }
    return true;
}

// Walks the items, handing each to take with its index; take returns false to
// stop with a format error. Logs failureText and returns 0 on a malformed
// payload, 1 at its end.
template <typename Take>
int WalkItems(const std::uint8_t* payload, std::uint32_t length, const char* failureText,
              Take take) {
    DataItemCursor cursor(payload, length);
    for (std::uint32_t index = 0;; ++index) {
        std::uint32_t itemLength = 0;
        const std::uint8_t* item = cursor.GetNextDataItem(itemLength);
        if (item == nullptr && itemLength == 0) {
            return 1;
        }
        if (item == nullptr || !take(index, item, itemLength)) {
            DllLogPrintf("%s", failureText);
            return 0;
        }
    }
}

// A number item's value: its first 4 bytes in network order. An item too
// short to hold them is refused rather than read past.
bool ReadNumber(const std::uint8_t* item, std::uint32_t itemLength, std::int32_t& value) {
    if (itemLength < kFieldSize) {
        return false;
    }
    value = static_cast<std::int32_t>(ReadBigEndian32(item));
    return true;
}

}  // namespace

int VecFileAttr2Result(const std::vector<FileAttrA>& entries, std::uint8_t*& block,
                       std::uint32_t& blockSize) {
    std::uint64_t payload = 0;
    for (const FileAttrA& entry : entries) {
        payload += entry.name.size() + kFieldSize + kNumberItemSize;
    }
    if (payload == 0) {
        DllLogPrintf("VecFileAttr2Result : Parameter Error, dwSize = %ld", 0L);
        return 0;
    }
    ItemBlock filled;
    if (!AllocateBlock(filled, "VecFileAttr2Result", payload)) {
        return 0;
    }
    for (const FileAttrA& entry : entries) {
        filled.PutText(entry.name);
        filled.PutNumber(entry.attribute);
    }
    block = filled.Release(blockSize);
    return 1;
}

int Result2FileAttr(const std::uint8_t* payload, std::uint32_t length,
                    std::vector<FileAttrA>& entries) {
    entries.clear();
    FileAttrA entry;
    return WalkItems(payload, length, "Result2FileAttr : Parameter Error",
                     [&](std::uint32_t index, const std::uint8_t* item, std::uint32_t itemLength) {
                         if (index % 2 == 0) {
                             if (itemLength >= kNameBufferSize) {
                                 return false;
                             }
                             const std::uint8_t* end = std::find(item, item + itemLength, 0);
                             entry.name.assign(reinterpret_cast<const char*>(item),
                                               static_cast<std::size_t>(end - item));
                             return true;
                         }
                         if (!ReadNumber(item, itemLength, entry.attribute)) {
                             return false;
                         }
                         entries.push_back(entry);
                         return true;
                     });
}

int ExistAttr2Result(const std::vector<ExistAttr>& answers, std::uint8_t*& block,
                     std::uint32_t& blockSize) {
    const std::uint64_t payload = std::uint64_t{answers.size()} * 2 * kNumberItemSize;
    if (payload == 0) {
        DllLogPrintf("ExistAttr2Result : dwSize = %ld", 0L);
        return 0;
    }
    ItemBlock filled;
    if (!AllocateBlock(filled, "ExistAttr2Result", payload)) {
        return 0;
    }
    for (const ExistAttr& answer : answers) {
        filled.PutNumber(answer.exists);
        filled.PutNumber(answer.directory);
    }
    block = filled.Release(blockSize);
    return 1;
}

int Result2ExistAttr(const std::uint8_t* payload, std::uint32_t length,
                     std::vector<ExistAttr>& answers) {
    std::vector<ExistAttr>().swap(answers);
    ExistAttr answer;
    return WalkItems(payload, length, "Result2ExistAttr : Parameter Error",
                     [&](std::uint32_t index, const std::uint8_t* item, std::uint32_t itemLength) {
                         if (index % 2 == 0) {
                             return ReadNumber(item, itemLength, answer.exists);
                         }
                         if (!ReadNumber(item, itemLength, answer.directory)) {
                             return false;
                         }
                         answers.push_back(answer);
                         return true;
                     });
}

}  // namespace vagent::files
