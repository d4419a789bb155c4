#pragma once

#include "vagent/ErrorCodes.h"
#include "vagent/VTask.h"

namespace vagent::test {

// A small task family that keeps the DoTask and Result2Struct contract as the
// real families do, so the base's part of it can be pinned on its own.
// Id 1 answers its list of strings reversed; id 2 answers an acknowledgement
// that is 1 for a non-empty list; ids outside 1..2 are not served.
class EchoTask final : public VTask {
public:
    static constexpr std::uint32_t kReverse = 1;
    static constexpr std::uint32_t kNonEmpty = 2;
    static constexpr std::uint32_t kWithoutRequest = kErrorInvalidSetting;

    explicit EchoTask(std::uint32_t taskId) : VTask(taskId) {}

    int Result2Struct(const std::uint8_t* payload, std::uint32_t length, void* output) override;
    int DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) override;

    using VTask::HandOutResult;
};

}  // namespace vagent::test
