#pragma once

#include <cstdint>

// The caller's hooks around every send and receive of a streamed transfer, so
// that it can wrap the stream in an outer protocol or report progress. The
// socket is passed as the system names it.
struct HTTP_FUN {
    // Called with the number of bytes about to be sent; 0 refuses the send.
    int (*pfnBeforeSend)(std::uintptr_t socket, int count);
    // Called with the address of the number of bytes wanted, which the hook
    // may lower; 0 fails the receive, 2 asks to be called again at once, any
    // other value lets the receive go on.
    int (*pfnBeforeRecv)(std::uintptr_t socket, int* count);
    // Called with the number of bytes just received; the result is ignored.
    int (*pfnAfterRecv)(int count);
};
