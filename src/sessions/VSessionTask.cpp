#include "vagent/VSessionTask.h"

#include <cstdio>
#include <new>
#include <string>
#include <vector>

#include "sessions/DecimalText.h"
#include "sessions/SessionCodecs.h"
#include "sessions/SessionOperations.h"
#include "sessions/SingleSignOn.h"
#include "sessions/SystemSettings.h"
#include "task/TaskIds.h"
#include "vagent/ErrorCodes.h"
#include "vagent/ResultDecoders.h"
#include "vagent/ResultEncoders.h"
#include "vagent/SessionRecords.h"

using namespace vagent::task;

namespace {

// The number of request items each id needs.
std::size_t RequiredItems(std::uint32_t taskId) {
    switch (taskId) {
        case kGetSysSetting:
        case kEnableSSO:
        case kEnableZ9SSO:
            return 1;
        default:
            return 2;
    }
}

std::string AsDecimalText(long value) {
    char text[24];
    std::snprintf(text, sizeof text, "%ld", value);
    return text;
}

}  // namespace

int VSessionTask::DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) {
    if (!PrepareResultOutputs(resultData, resultLength, "DoTask : Parameter Error")) {
        return 0;
    }
    try {
        switch (taskId_) {
            case kGetSessionCounts:
            case kGetSessionCountsAll:
                return CountTask(resultData, resultLength);
            case kGetSessionInfo:
                return SessionListTask(resultData, resultLength);
            case kGetSysSetting:
            case kSetSysSetting:
                return SettingTask(resultData, resultLength);
            case kSessionLogoff:
            case kEnableSSO:
            case kEnableZ9SSO:
            case kBroadcastMessage:
                return AcknowledgedTask(resultData, resultLength);
            default:
                return 0;
        }
    } catch (const std::bad_alloc&) {
        errorCode_ = vagent::kErrorNotEnoughMemory;
        return 0;
    }
}

int VSessionTask::CountTask(std::uint8_t** resultData, std::uint32_t* resultLength) {
    const int count =
        taskId_ == kGetSessionCounts ? vagent::GetSessionCounts() : vagent::GetSessionCountsAll();
    const int truth = count < 0 ? 0 : 1;
    // The count travels even when it is -1.
    if (vagent::SessionCount2Result(count, *resultData, *resultLength) == 0) {
        return HandOutResult(truth, nullptr, 0, resultData, resultLength);
    }
    return truth;
}

int VSessionTask::SessionListTask(std::uint8_t** resultData, std::uint32_t* resultLength) {
    std::vector<_VXSessionA> sessions;
    const int listed = vagent::GetSessionInfo(sessions);
    // An empty list makes no block: nothing is handed out.
    vagent::SessionInfo2Result(sessions, *resultData, *resultLength);
    return listed;
}

int VSessionTask::SettingTask(std::uint8_t** resultData, std::uint32_t* resultLength) {
    const std::uint8_t* payload = nullptr;
    std::uint32_t length = 0;
    std::vector<std::string> items;
    if (!RequestPayload(payload, length) || Data2VecTString(payload, length, items) == 0 ||
        items.size() != RequiredItems(taskId_)) {
        return 0;
    }
    const long type = vagent::DecimalValue(items[0]);
    std::vector<std::string> answer;
    if (taskId_ == kGetSysSetting) {
        std::int32_t value = 0;
        const int result = vagent::GetSysSetting(type, &value);
        answer = {AsDecimalText(result), AsDecimalText(value)};
    } else {
        answer = {AsDecimalText(vagent::SetSysSetting(type, vagent::DecimalValue(items[1])))};
    }
    return VecTStringToResult(answer, *resultData, *resultLength);
}

int VSessionTask::AcknowledgedTask(std::uint8_t** resultData, std::uint32_t* resultLength) {
    const std::uint8_t* payload = nullptr;
    std::uint32_t length = 0;
    std::vector<std::string> items;
    int code = RequestPayload(payload, length) ? Data2VecTString(payload, length, items) : 0;
    // A request with another number of items is acknowledged as decoded and
    // nothing is done.
    if (code != 0 && items.size() == RequiredItems(taskId_)) {
        switch (taskId_) {
            case kSessionLogoff:
                code = vagent::SessionLogoff(vagent::DecimalValue(items[0]),
                                             vagent::DecimalValue(items[1]));
                break;
            case kEnableSSO:
                code = vagent::EnableSSO(vagent::DecimalValue(items[0]));
                break;
            case kEnableZ9SSO:
                code = vagent::EnableZ9SSO(vagent::DecimalValue(items[0]));
                break;
            default:
                vagent::BroadcastMessage(items[0], items[1]);
                break;
        }
    }
    return HandOutResult(code, nullptr, 0, resultData, resultLength);
}

int VSessionTask::Result2Struct(const std::uint8_t* payload, std::uint32_t length, void* output) {
    if (!CheckResultArguments(payload, length, output)) {
        return 0;
    }
    try {
        switch (taskId_) {
            case kGetSessionCounts:
            case kGetSessionCountsAll:
                return vagent::Result2SessionCount(payload, length, *static_cast<int*>(output));
            case kGetSessionInfo:
                return vagent::Result2SessionInfo(payload, length,
                                                  *static_cast<std::vector<_VXSessionA>*>(output));
            case kGetSysSetting:
            case kSetSysSetting:
                return Data2VecTString(payload, length,
                                       *static_cast<std::vector<std::string>*>(output));
            case kSessionLogoff:
            case kEnableSSO:
            case kEnableZ9SSO:
            case kBroadcastMessage:
                return Result2Ack(payload, length, *static_cast<std::uint32_t*>(output));
            default:
                return 0;
        }
    } catch (const std::bad_alloc&) {
        errorCode_ = vagent::kErrorNotEnoughMemory;
        return 0;
    }
}
