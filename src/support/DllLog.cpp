#include "vagent/DllLog.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <mutex>

#include "support/FormatText.h"
#include "vagent/VLog.h"

namespace {

// Program-wide messages are written at this level and type.
constexpr std::int32_t kDllLogLevel = 2;
constexpr std::int32_t kDllLogType = 2;

std::atomic<VLog*> installedLog{nullptr};

// Serialises program-wide messages so that lines from several threads do not
// interleave and each sees the level and type it set.
std::mutex& DllLogLock() {
    static std::mutex lock;
    return lock;
}

}  // namespace

void SetDllLog(VLog* log) {
    std::lock_guard<std::mutex> hold(DllLogLock());
    installedLog.store(log);
}

int DllLogPrintf(const char* format, ...) {
    if (installedLog.load() == nullptr) {
        return 0;
    }
    std::unique_ptr<char[]> text;
    va_list arguments;
    va_start(arguments, format);
    const bool formatted = vagent::FormatInto(text, format, arguments);
    va_end(arguments);
    if (!formatted) {
        return 0;
    }
    std::fputs(text.get(), stdout);

    std::lock_guard<std::mutex> hold(DllLogLock());
    VLog* log = installedLog.load();
    if (log == nullptr) {
        return 0;
    }
    const std::int32_t previousLevel = log->SetMsgLevel(kDllLogLevel);
    const std::int32_t previousType = log->SetMsgType(kDllLogType);
    // The message passes through the log's own formatting a second time.
    const int result = log->LogText(vagent::ExpandWithoutArguments(text.get()));
    log->SetMsgLevel(previousLevel);
    log->SetMsgType(previousType);
    return result;
}
