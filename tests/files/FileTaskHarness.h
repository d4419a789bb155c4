#pragma once

#include <cstdint>
#include <vector>

#include "helpers/TaskRun.h"
#include "vagent/VFileTask.h"

namespace vagent::test {

// Gives the task the block as the service does (connection in word 5) and
// runs DoTask.
TaskAnswer RunFileTask(VFileTask& task, const std::vector<std::uint8_t>& block,
                       std::uintptr_t connection = 0);

// Decodes a result payload on a client task of the same id; an answer without
// a block reaches Result2Struct as no payload.
int DecodeResult(std::uint32_t taskId, const TaskAnswer& answer, void* output);

}  // namespace vagent::test
