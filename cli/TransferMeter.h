#pragma once

#include <cstdint>

#include "vagent/HttpFun.h"

namespace vagentctl {

// Counts the bytes of every streamed transfer through the facade's hooks.
// The hooks carry no context of their own, so the counts are process-wide:
// one run of the program is one transfer, over however many hosts.
class TransferMeter {
public:
    static HTTP_FUN* Hooks();
    static void Reset();
    static std::uint64_t SentBytes();
    static std::uint64_t ReceivedBytes();

private:
    static int BeforeSend(std::uintptr_t socket, int count);
    static int BeforeReceive(std::uintptr_t socket, int* count);
    static int AfterReceive(int count);
};

}  // namespace vagentctl
