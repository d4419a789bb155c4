#include <cstdlib>
#include <string>
#include <vector>

#include "files/FileBundleCodecs.h"
#include "files/ListingCodecs.h"
#include "vagent/DllLog.h"
#include "vagent/ResultDecoders.h"
#include "vagent/VFileTask.h"

// The client side of the file family: each id's result payload turned into
// the caller's output.

namespace {

int DecodeFirstString(const std::uint8_t* payload, std::uint32_t length, std::string& text) {
    std::vector<std::string> items;
    const int decoded = Data2VecTString(payload, length, items);
    text = items.empty() ? std::string() : items.front();
    return decoded;
}

int DecodeFirstNumber(const std::uint8_t* payload, std::uint32_t length, int& number) {
    std::vector<std::string> items;
    const int decoded = Data2VecTString(payload, length, items);
    number = items.empty() ? 0 : std::atoi(items.front().c_str());
    return decoded;
}

int DecodeOnlyNumber(const std::uint8_t* payload, std::uint32_t length, int& number) {
    std::vector<std::string> items;
    if (Data2VecTString(payload, length, items) == 0 || items.size() != 1) {
        return 0;
    }
    number = std::atoi(items.front().c_str());
    return 1;
}

// Whether a well-formed acknowledgement arrived, whatever value it held.
int DecodeAckArrived(const std::uint8_t* payload, std::uint32_t length, int& arrived) {
    std::uint32_t value = 0;
    arrived = Result2Ack(payload, length, value);
    return arrived;
}

int DecodeAckValue(const std::uint8_t* payload, std::uint32_t length, int& carried) {
    std::uint32_t value = 0;
    const int decoded = Result2Ack(payload, length, value);
    if (decoded != 0) {
        carried = static_cast<int>(value);
    }
    return decoded;
}

}  // namespace

int VFileTask::Result2Struct(const std::uint8_t* payload, std::uint32_t length, void* output) {
    if (!CheckResultArguments(payload, length, output)) {
        return 0;
    }
    switch (taskId_) {
        case 28:
            return vagent::files::Result2FileAttr(payload, length,
                                                  *static_cast<std::vector<FileAttrA>*>(output));
        case 29:
            return vagent::files::Result2ExistAttr(payload, length,
                                                   *static_cast<std::vector<ExistAttr>*>(output));
        case 30:
            return vagent::files::Result2Files(payload, length);
        case 31:
        case 34:
        case 46:
            return DecodeFirstString(payload, length, *static_cast<std::string*>(output));
        case 35:
            return DecodeFirstNumber(payload, length, *static_cast<int*>(output));
        case 38:
            return DecodeOnlyNumber(payload, length, *static_cast<int*>(output));
        case 39:
        case 47:
            return DecodeAckArrived(payload, length, *static_cast<int*>(output));
        case 44:
        case 45:
            return DecodeAckValue(payload, length, *static_cast<int*>(output));
        default:
            DllLogPrintf("Result2Struct : Unknow Task Id = [%ld]", static_cast<long>(taskId_));
            return 0;
    }
}
