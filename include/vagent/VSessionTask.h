#pragma once

#include <cstdint>

#include "vagent/Export.h"
#include "vagent/SessionRecords.h"
#include "vagent/VTask.h"

// The terminal-session tasks: counts (24, 25), the session list (26),
// system settings (32, 33), log off or disconnect (36), single sign-on
// switches (40, 41) and the broadcast message (43).
//
// Result2Struct's output by id: 24, 25 an int (the count); 26 a
// std::vector<_VXSessionA>; 32, 33 a std::vector<std::string>; 36, 40, 41,
// 43 a std::uint32_t (the acknowledgement).
class VAGENT_API VSessionTask : public VTask {
public:
    explicit VSessionTask(std::uint32_t taskId) : VTask(taskId) {}

    int Result2Struct(const std::uint8_t* payload, std::uint32_t length, void* output) override;
    int DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) override;

private:
    int CountTask(std::uint8_t** resultData, std::uint32_t* resultLength);
    int SessionListTask(std::uint8_t** resultData, std::uint32_t* resultLength);
    int SettingTask(std::uint8_t** resultData, std::uint32_t* resultLength);
    int AcknowledgedTask(std::uint8_t** resultData, std::uint32_t* resultLength);
};
