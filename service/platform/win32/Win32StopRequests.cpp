#include "platform/StopRequests.h"

#include "os/win32/WindowsHeaders.h"

namespace vagent::service::platform {
namespace {

// The console calls its handler on a thread of its own, with no context:
// the handler and the waiting program meet at this one event.
HANDLE StopEvent() {
    static const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    return event;
}

BOOL WINAPI OnConsoleControl(DWORD control) {
    switch (control) {
        case CTRL_C_EVENT:
        case CTRL_BREAK_EVENT:
        case CTRL_CLOSE_EVENT:
        case CTRL_SHUTDOWN_EVENT:
            SetEvent(StopEvent());
            return TRUE;
        default:
            return FALSE;
    }
}

}  // namespace

void ArmStopRequests() {
    StopEvent();
    SetConsoleCtrlHandler(OnConsoleControl, TRUE);
}

void WaitForStopRequest() {
    WaitForSingleObject(StopEvent(), INFINITE);
}

}  // namespace vagent::service::platform
