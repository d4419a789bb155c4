#include "files/FileTaskHarness.h"

namespace vagent::test {

TaskAnswer RunFileTask(VFileTask& task, const std::vector<std::uint8_t>& block,
                       std::uintptr_t connection) {
    GiveRequest(task, block, connection);
    return RunDoTask(task);
}

int DecodeResult(std::uint32_t taskId, const TaskAnswer& answer, void* output) {
    VFileTask client(taskId);
    return client.Result2Struct(answer.Payload(), answer.PayloadLength(), output);
}

}  // namespace vagent::test
