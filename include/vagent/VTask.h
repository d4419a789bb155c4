#pragma once

#include <cstdint>
#include <new>

#include "vagent/ErrorCodes.h"
#include "vagent/Export.h"
#include "vagent/TaskRequest.h"

// One numbered operation. On the agent service's side it takes a received
// request and executes it (DoTask), producing the result block to send back;
// on the client's side it turns a received result payload into the caller's
// output (Result2Struct). Deleting a task through this base releases its
// request.
//
// Host programs built against this class call SetRequest, Result2Struct and
// DoTask through the first three entries of its table of operations, in this
// order; the virtual destructor is declared after them so that its entries
// come last.
class VAGENT_API VTask {
public:
    explicit VTask(std::uint32_t taskId);
    VTask(const VTask&) = delete;
    VTask& operator=(const VTask&) = delete;

    // Keeps a copy of the request and its data; on allocation failure keeps
    // the previous request and returns 0.
    virtual int SetRequest(const TaskRequest& request);
    virtual int Result2Struct(const std::uint8_t* payload, std::uint32_t length, void* output) = 0;
    // Hands out a result block for the caller to delete[].
    virtual int DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) = 0;
    virtual ~VTask();

    int SetWorkEnv(int env, int* previous);

    std::uint32_t GetTaskId() const { return taskId_; }
    std::uint32_t GetErrorCode() const { return errorCode_; }
    std::int32_t GetWorkEnv() const { return workEnv_; }
    const TaskRequest* GetRequest() const { return request_; }

protected:
    // The DoTask preamble: refuses null out-pointers with the given log text
    // and clears both outputs.
    static bool PrepareResultOutputs(std::uint8_t** resultData, std::uint32_t* resultLength,
                                     const char* parameterErrorText);
    // The Result2Struct preamble: refuses a null payload, an empty one or a
    // null output with "Result2Struct : Parameter Error".
    static bool CheckResultArguments(const std::uint8_t* payload, std::uint32_t length,
                                     const void* output);
    // The request block's payload: 4 bytes into the request data, 4 bytes
    // shorter. False when there is no request or its data is shorter than 4.
    bool RequestPayload(const std::uint8_t*& payload, std::uint32_t& length) const;
    // The DoTask epilogue: hands out the result block of an operation that
    // succeeded and made one; otherwise releases it and hands out an
    // acknowledgement carrying the truth value. Returns the truth value.
    static int HandOutResult(int succeeded, std::uint8_t* data, std::uint32_t length,
                             std::uint8_t** resultData, std::uint32_t* resultLength);
    // The DoTask body of a family whose operations all read the request's
    // payload: runs operation(payload, length, data, size) on it, records an
    // exhausted allocation as error 8, and hands out the block or the
    // acknowledgement. A missing or too short request is a failed operation.
    template <class Operation>
    int RunOnRequestPayload(std::uint8_t** resultData, std::uint32_t* resultLength,
                            Operation operation) {
        const std::uint8_t* payload = nullptr;
        std::uint32_t length = 0;
        std::uint8_t* data = nullptr;
        std::uint32_t size = 0;
        int result = 0;
        if (RequestPayload(payload, length)) {
            try {
                result = operation(payload, length, data, size);
            } catch (const std::bad_alloc&) {
                errorCode_ = vagent::kErrorNotEnoughMemory;
                result = 0;
            }
        }
        return HandOutResult(result, data, size, resultData, resultLength);
    }

    TaskRequest* request_ = nullptr;
    std::int32_t workEnv_ = 0;
    std::uint32_t taskId_;
    std::uint32_t errorCode_ = 0;
};
