#include "task/EchoTask.h"

#include <algorithm>
#include <string>
#include <vector>

#include "vagent/ResultDecoders.h"
#include "vagent/ResultEncoders.h"

namespace vagent::test {

int EchoTask::DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) {
    if (!PrepareResultOutputs(resultData, resultLength, "DoTask : Parameter Error")) {
        return 0;
    }
    if (request_ == nullptr) {
        errorCode_ = kWithoutRequest;
        return 0;
    }
    if (taskId_ != kReverse && taskId_ != kNonEmpty) {
        return 0;
    }
    const std::uint8_t* payload = nullptr;
    std::uint32_t length = 0;
    std::vector<std::string> strings;
    if (!RequestPayload(payload, length) || Data2VecTString(payload, length, strings) == 0) {
        return HandOutResult(0, nullptr, 0, resultData, resultLength);
    }
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    int succeeded = strings.empty() ? 0 : 1;
    if (taskId_ == kReverse) {
        std::reverse(strings.begin(), strings.end());
        succeeded = VecTStringToResult(strings, data, size);
    }
    return HandOutResult(succeeded, data, size, resultData, resultLength);
}

int EchoTask::Result2Struct(const std::uint8_t* payload, std::uint32_t length, void* output) {
    if (!CheckResultArguments(payload, length, output)) {
        return 0;
    }
    switch (taskId_) {
        case kReverse:
            return Data2VecTString(payload, length,
                                   *static_cast<std::vector<std::string>*>(output));
        case kNonEmpty:
            return Result2Ack(payload, length, *static_cast<std::uint32_t*>(output));
        default:
            return 0;
    }
}

}  // namespace vagent::test
