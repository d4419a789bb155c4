#include "vagent/VTask.h"

#include <cstring>
#include <new>

#include "vagent/DllLog.h"
#include "vagent/ResultEncoders.h"

namespace {

void Release(TaskRequest* request) {
    if (request != nullptr) {
        delete[] request->data;
        delete request;
    }
}

}  // namespace

#if defined(_WIN32) && !defined(_WIN64)
static_assert(sizeof(TaskRequest) == 24, "the request record is six 32-bit words");
#endif

VTask::VTask(std::uint32_t taskId) : taskId_(taskId) {}

VTask::~VTask() {
    Release(request_);
}

int VTask::SetRequest(const TaskRequest& request) {
    auto* copy = new (std::nothrow) TaskRequest(request);
    if (copy == nullptr) {
        return 0;
    }
    copy->data = nullptr;
    if (request.length != 0) {
        copy->data = new (std::nothrow) std::uint8_t[request.length];
        if (copy->data == nullptr) {
            delete copy;
            return 0;
        }
        std::memcpy(copy->data, request.data, request.length);
    }
    Release(request_);
    request_ = copy;
    return 1;
}

int VTask::SetWorkEnv(int env, int* previous) {
    if (previous != nullptr) {
        *previous = workEnv_;
    }
    workEnv_ = env;
    return 1;
}

bool VTask::PrepareResultOutputs(std::uint8_t** resultData, std::uint32_t* resultLength,
                                 const char* parameterErrorText) {
    if (resultData == nullptr || resultLength == nullptr) {
        DllLogPrintf("%s", parameterErrorText);
        return false;
    }
    *resultData = nullptr;
    *resultLength = 0;
    return true;
}

bool VTask::CheckResultArguments(const std::uint8_t* payload, std::uint32_t length,
                                 const void* output) {
    if (payload == nullptr || length == 0 || output == nullptr) {
        DllLogPrintf("Result2Struct : Parameter Error");
        return false;
    }
    return true;
}

bool VTask::RequestPayload(const std::uint8_t*& payload, std::uint32_t& length) const {
    if (request_ == nullptr || request_->data == nullptr || request_->length < 4) {
        return false;
    }
    payload = request_->data + 4;
    length = request_->length - 4;
    return true;
}

int VTask::HandOutResult(int succeeded, std::uint8_t* data, std::uint32_t length,
                         std::uint8_t** resultData, std::uint32_t* resultLength) {
    const int truth = succeeded != 0 ? 1 : 0;
    if (truth == 1 && data != nullptr && length != 0) {
        *resultData = data;
        *resultLength = length;
        return truth;
    }
    delete[] data;
    Ack2Result(static_cast<std::uint32_t>(truth), *resultData, *resultLength);
    return truth;
}
