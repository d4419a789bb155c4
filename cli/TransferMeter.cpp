#include "TransferMeter.h"

#include <atomic>

namespace vagentctl {
namespace {

std::atomic<std::uint64_t> sentBytes{0};
std::atomic<std::uint64_t> receivedBytes{0};

// Any value but 0 and 2 lets a receive go on.
constexpr int kGoOn = 1;

std::uint64_t Counted(int count) {
    return count > 0 ? static_cast<std::uint64_t>(count) : 0;
}

}  // namespace

HTTP_FUN* TransferMeter::Hooks() {
    static HTTP_FUN hooks{&TransferMeter::BeforeSend, &TransferMeter::BeforeReceive,
                          &TransferMeter::AfterReceive};
    return &hooks;
}

void TransferMeter::Reset() {
    sentBytes = 0;
    receivedBytes = 0;
}

std::uint64_t TransferMeter::SentBytes() {
    return sentBytes;
}

std::uint64_t TransferMeter::ReceivedBytes() {
    return receivedBytes;
}

int TransferMeter::BeforeSend(std::uintptr_t, int count) {
    sentBytes += Counted(count);
    return kGoOn;
}

int TransferMeter::BeforeReceive(std::uintptr_t, int*) {
    return kGoOn;
}

int TransferMeter::AfterReceive(int count) {
    receivedBytes += Counted(count);
    return 0;
}

}  // namespace vagentctl
