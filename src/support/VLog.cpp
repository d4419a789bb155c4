#include "vagent/VLog.h"

#include <cstdarg>
#include <memory>
#include <vector>

#include "os/Facilities.h"
#include "os/FileSystem.h"
#include "os/HostFacts.h"
#include "support/ModuleDirectory.h"
#include "support/FormatText.h"

namespace {

constexpr const char* kLoopbackAddress = "127.0.0.1";
constexpr const char* kDefaultName = "AgentLog";

std::string FirstNonLoopbackAddress() {
    std::vector<std::string> addresses;
    if (vagent::os::Host().AdapterIPv4Addresses(addresses) == 0) {
        for (const std::string& address : addresses) {
            if (address != kLoopbackAddress) {
                return address;
            }
        }
    }
    return kLoopbackAddress;
}

}  // namespace

VLog::VLog() : VLog(nullptr) {}

VLog::VLog(const char* name)
    : logDir_(vagent::ModuleDirectory(vagent::os::Module::Executable)),
      logName_(vagent::BoundedText(name != nullptr ? name : kDefaultName)),
      hostAddress_(FirstNonLoopbackAddress()) {}

// A copy opens its own stream at its first write: two objects that shared one
// stream would close it twice.
VLog::VLog(const VLog& other) {
    CopySettings(other);
}

VLog& VLog::operator=(const VLog& other) {
    if (this != &other) {
        CloseFile();
        CopySettings(other);
    }
    return *this;
}

void VLog::CopySettings(const VLog& other) {
    logDir_ = other.logDir_;
    logName_ = other.logName_;
    fileCount_ = other.fileCount_;
    maxFileSize_ = other.maxFileSize_;
    logLevel_ = other.logLevel_;
    msgLevel_ = other.msgLevel_;
    msgType_ = other.msgType_;
    para3_ = other.para3_;
    para1_ = other.para1_;
    para2_ = other.para2_;
    hostAddress_ = other.hostAddress_;
}

VLog::~VLog() {
    CloseFile();
}

void VLog::SetLogPara(std::int32_t para1, std::int32_t para2, std::int32_t para3) {
    if (para1 != 0) {
        para1_ = para1;
    }
    if (para2 != 0) {
        para2_ = para2;
    }
    if (para3 != 0) {
        para3_ = para3;
    }
}

std::int32_t VLog::SetLogLevel(std::int32_t level) {
    const std::int32_t previous = logLevel_;
    logLevel_ = level;
    return previous;
}

std::int32_t VLog::SetMsgLevel(std::int32_t level) {
    const std::int32_t previous = msgLevel_;
    msgLevel_ = level;
    return previous;
}

std::int32_t VLog::SetMsgType(std::int32_t type) {
    const std::int32_t previous = msgType_;
    msgType_ = type;
    return previous;
}

void VLog::SetLogInfo(const char* name, const std::int32_t* fileCount,
                      const std::int32_t* maxFileSize) {
    if (name != nullptr) {
        logName_ = vagent::BoundedText(name);
    }
    if (fileCount != nullptr) {
        fileCount_ = *fileCount;
    }
    if (maxFileSize != nullptr) {
        maxFileSize_ = *maxFileSize;
    }
}

std::string VLog::BasePath() const {
    return logDir_ + logName_;
}

std::string VLog::NumberedPath(std::int32_t number) const {
    return BasePath() + std::to_string(number) + ".log";
}

void VLog::CloseFile() {
    if (file_ != nullptr) {
        std::fclose(file_);
        file_ = nullptr;
    }
}

// A buffered runtime may accept the line and only fail when it is flushed, so
// the stream's error state counts as a failed write too. Either way the file is
// closed, and the next message reopens it.
void VLog::FlushOrClose(bool written) {
    std::fflush(file_);
    if (!written || std::ferror(file_) != 0) {
        CloseFile();
    }
}

int VLog::OpenLog() {
    CloseFile();
    file_ = vagent::os::Files().Open(NumberedPath(0), "a+t");
    return file_ != nullptr ? 1 : 0;
}

void VLog::CloseLog() {
    CloseFile();
}

int VLog::BackupCheck() {
    vagent::os::FileSystem& files = vagent::os::Files();
    const std::string current = NumberedPath(0);
    if (!files.Exists(current)) {
        return 1;
    }
    std::uint64_t size = 0;
    if (files.Size(current, size) != 0) {
        return 0;
    }
    if (static_cast<std::int64_t>(size) < maxFileSize_) {
        return 1;
    }
    CloseFile();
    // Copies, not moves, from the highest number down: every file moves up
    // by one place and the oldest is overwritten. Failures leave a gap in
    // the history but never stop the log.
    for (std::int32_t number = fileCount_ - 1; number >= 1; --number) {
        files.Copy(NumberedPath(number - 1), NumberedPath(number), false);
        if (number == 1) {
            files.Remove(current);
        }
    }
    return 1;
}

int VLog::WriteLog(const std::string& text) {
    if (msgLevel_ > logLevel_) {
        return 1;
    }
    BackupCheck();
    if (file_ == nullptr && OpenLog() == 0) {
        return 0;
    }
    const vagent::os::LocalTime now = vagent::os::Host().CurrentLocalTime();
    const int written = std::fprintf(file_, "%04d/%02d/%02d %02d:%02d:%02d.%03d | %d | %d | %s\n",
                                     now.year, now.month, now.day, now.hour, now.minute, now.second,
                                     now.milliseconds, msgLevel_, msgType_, text.c_str());
    FlushOrClose(written > 0);
    return 1;
}

int VLog::WriteLog(const std::uint8_t* data, int length) {
    if (msgLevel_ > logLevel_) {
        return 1;
    }
    BackupCheck();
    if (file_ == nullptr && OpenLog() == 0) {
        return 0;
    }
    const vagent::os::LocalTime now = vagent::os::Host().CurrentLocalTime();
    std::fprintf(file_, "%04d/%02d/%02d %02d:%02d:%02d.%03d | %d | %d | ", now.year, now.month,
                 now.day, now.hour, now.minute, now.second, now.milliseconds, msgLevel_, msgType_);
    const std::size_t count = data != nullptr && length > 0 ? static_cast<std::size_t>(length) : 0;
    const std::size_t written = count > 0 ? std::fwrite(data, 1, count, file_) : 0;
    std::fputs("\n", file_);
    FlushOrClose(written > 0);
    return 1;
}

int VLog::LogText(const std::string& text) {
    std::fputs(text.c_str(), stdout);
    std::fputs("\n", stdout);
    return WriteLog(text);
}

int VLog::LogMessage(const char* format, ...) {
    std::unique_ptr<char[]> text;
    va_list arguments;
    va_start(arguments, format);
    const bool formatted = vagent::FormatInto(text, format, arguments);
    va_end(arguments);
    if (!formatted) {
        return 0;
    }
    return LogText(text.get());
}
