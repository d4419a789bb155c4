#include "sessions/SessionCodecs.h"

#include "task/ByteOrder.h"
#include "task/ItemBlock.h"
#include "vagent/DataItemCursor.h"
#include "vagent/DllLog.h"

namespace vagent {
namespace {

constexpr std::uint32_t kCountBlockSize = 8;
constexpr std::uint32_t kNumberItemLength = 4;
constexpr std::uint32_t kItemsPerSession = 5;

std::uint64_t SessionInfoPayload(const std::vector<_VXSessionA>& sessions) {
    std::uint64_t payload = 0;
    for (const _VXSessionA& session : sessions) {
        payload += ItemBlock::ItemSize(kNumberItemLength) +
                   ItemBlock::ItemSize(session.info1.size()) +
                   ItemBlock::ItemSize(session.macAddress.size()) +
                   ItemBlock::ItemSize(session.info3.size()) +
                   ItemBlock::ItemSize(session.clientAddress.size());
    }
    return payload;
}

// Puts one item into the record by its place in the turn of five; true when
// the record is complete.
bool AssignSessionItem(std::uint32_t index, const std::uint8_t* item, std::uint32_t length,
                       _VXSessionA& record) {
    const std::string text(reinterpret_cast<const char*>(item), length);
    switch (index % kItemsPerSession) {
        case 0:
            record = _VXSessionA();
            record.sessionId = static_cast<int>(ReadBigEndian32(item));
            return false;
        case 1:
            record.info1 = text;
            return false;
        case 2:
            record.macAddress = text;
            return false;
        case 3:
            record.info3 = text;
            return false;
        default:
            record.clientAddress = text;
            return true;
    }
}

}  // namespace

int SessionCount2Result(int count, std::uint8_t*& block, std::uint32_t& blockSize) {
    ItemBlock filled;
    if (!filled.Allocate(kCountBlockSize - 4)) {
        DllLogPrintf("SessionCount2Result : new [%d] bytes failed",
                     static_cast<int>(kCountBlockSize));
        return 0;
    }
    filled.PutWord(static_cast<std::uint32_t>(count));
    block = filled.Release(blockSize);
    return 1;
}

int SessionInfo2Result(const std::vector<_VXSessionA>& sessions, std::uint8_t*& block,
                       std::uint32_t& blockSize) {
    const std::uint64_t payload = SessionInfoPayload(sessions);
    if (payload == 0) {
        DllLogPrintf("SessionInfo2Result : dwSize = [%ld]", 0L);
        return 0;
    }
    ItemBlock filled;
    if (!filled.Allocate(payload)) {
        DllLogPrintf("SessionInfo2Result : new [%ld] bytes failed", static_cast<long>(payload));
        return 0;
    }
    for (const _VXSessionA& session : sessions) {
        filled.PutNumber(session.sessionId);
        filled.PutText(session.info1);
        filled.PutText(session.macAddress);
        filled.PutText(session.info3);
        filled.PutText(session.clientAddress);
    }
    block = filled.Release(blockSize);
    return 1;
}

int Result2SessionCount(const std::uint8_t* payload, std::uint32_t length, int& count) {
    if (payload == nullptr || length != kNumberItemLength) {
        DllLogPrintf("Result2SessionCount : Parameter Error");
        return 0;
    }
    count = static_cast<int>(ReadBigEndian32(payload));
    return count >= 0 ? 1 : 0;
}

int Result2SessionInfo(const std::uint8_t* payload, std::uint32_t length,
                       std::vector<_VXSessionA>& sessions) {
    DataItemCursor cursor(payload, length);
    _VXSessionA record;
    for (std::uint32_t index = 0;; ++index) {
        std::uint32_t itemLength = 0;
        const std::uint8_t* item = cursor.GetNextDataItem(itemLength);
        if (item == nullptr && itemLength == 0) {
            return 1;
        }
        // An id item of any other size than 4 is as malformed as an overrun.
        const bool badId = index % kItemsPerSession == 0 && itemLength != kNumberItemLength;
        if (item == nullptr || badId) {
            DllLogPrintf("Result2SessionInfo : Parameter Error");
            return 0;
        }
        if (AssignSessionItem(index, item, itemLength, record)) {
            sessions.push_back(record);
        }
    }
}

}  // namespace vagent
