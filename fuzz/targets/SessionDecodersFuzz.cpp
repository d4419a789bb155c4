// Feeds arbitrary payloads to the session and printer decoders, directly and
// through the families' Result2Struct: the first byte chooses the decoder,
// the rest is the payload. Whatever the decoders keep must be records they
// could have read from the payload.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "sessions/PrinterCodecs.h"
#include "sessions/SessionCodecs.h"
#include "vagent/VPrinterTask.h"
#include "vagent/VSessionTask.h"

namespace {

void Check(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// Each record takes at least 24 bytes of payload: five length fields and the
// 4-byte id.
void DecodeSessions(const std::uint8_t* payload, std::uint32_t size) {
    std::vector<_VXSessionA> sessions;
    vagent::Result2SessionInfo(payload, size, sessions);
    Check(sessions.size() <= size / 24);
    std::size_t texts = 0;
    for (const _VXSessionA& session : sessions) {
        texts += session.info1.size() + session.macAddress.size() + session.info3.size() +
                 session.clientAddress.size();
    }
    Check(texts + 24 * sessions.size() <= size);
}

// Each record takes at least 12 bytes: two length fields and the number.
void DecodePrinters(const std::uint8_t* payload, std::uint32_t size) {
    std::vector<_VXPrinterA> printers;
    vagent::Result2PrintInfo(payload, size, printers);
    Check(printers.size() <= size / 12);
}

void DecodeCount(const std::uint8_t* payload, std::uint32_t size) {
    int count = 0;
    const int result = vagent::Result2SessionCount(payload, size, count);
    Check(result == 0 || size == 4);
}

void DecodeThroughSessionTask(std::uint32_t id, const std::uint8_t* payload, std::uint32_t size) {
    VSessionTask task(id);
    std::vector<_VXSessionA> sessions;
    std::vector<std::string> strings;
    std::uint32_t value = 0;
    int count = 0;
    void* output = &value;
    if (id == 26) {
        output = &sessions;
    } else if (id == 32 || id == 33) {
        output = &strings;
    } else if (id == 24 || id == 25) {
        output = &count;
    }
    const int result = task.Result2Struct(payload, size, output);
    Check(result == 0 || result == 1);
}

void DecodeThroughPrinterTask(const std::uint8_t* payload, std::uint32_t size) {
    VPrinterTask task(27);
    std::vector<_VXPrinterA> printers;
    const int result = task.Result2Struct(payload, size, &printers);
    Check(result == 0 || result == 1);
}

constexpr std::uint32_t kSessionIds[] = {24, 25, 26, 32, 33, 36, 40, 41, 43};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The decoders read a length field before they look at the size, as the
    // payloads they are given are never empty.
    if (size < 5) {
        return 0;
    }
    const std::uint8_t* payload = data + 1;
    const auto length = static_cast<std::uint32_t>(size - 1);
    switch (data[0] % 5) {
        case 0:
            DecodeSessions(payload, length);
            break;
        case 1:
            DecodePrinters(payload, length);
            break;
        case 2:
            DecodeCount(payload, length);
            break;
        case 3:
            DecodeThroughSessionTask(kSessionIds[(data[0] / 5) % 9], payload, length);
            break;
        default:
            DecodeThroughPrinterTask(payload, length);
            break;
    }
    return 0;
}
