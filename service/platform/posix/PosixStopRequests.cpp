#include "platform/StopRequests.h"

#include <pthread.h>
#include <signal.h>

namespace vagent::service::platform {
namespace {

sigset_t StopSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

}  // namespace

// The stop signals are blocked in every thread and taken with sigwait, so no
// handler runs at an arbitrary point of the serving code.
void ArmStopRequests() {
    ::signal(SIGPIPE, SIG_IGN);
    const sigset_t signals = StopSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void WaitForStopRequest() {
    const sigset_t signals = StopSignals();
    int received = 0;
    while (sigwait(&signals, &received) != 0) {
    }
}

}  // namespace vagent::service::platform
