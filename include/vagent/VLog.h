#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "vagent/Export.h"

// A plain-text log file with one time-stamped line per message, rotated by
// size: "<name>0.log" is the current file, "<name>1.log" up to
// "<name>(fileCount-1).log" the older ones, all beside the executable.
class VAGENT_API VLog {
public:
    static constexpr std::int32_t kDefaultFileCount = 5;
    static constexpr std::int32_t kDefaultMaxFileSize = 0x500000;

    VLog();
    explicit VLog(const char* name);
    // A copy takes every setting but not the open stream: it opens its own at
    // its first write.
    VLog(const VLog& other);
    VLog& operator=(const VLog& other);
    ~VLog();

    // Stores each argument that is not zero.
    void SetLogPara(std::int32_t para1, std::int32_t para2, std::int32_t para3);
    // Each setter returns the previous value.
    std::int32_t SetLogLevel(std::int32_t level);
    std::int32_t SetMsgLevel(std::int32_t level);
    std::int32_t SetMsgType(std::int32_t type);
    // Each non-null argument replaces its setting; a new name takes effect at
    // the next open.
    void SetLogInfo(const char* name, const std::int32_t* fileCount,
                    const std::int32_t* maxFileSize);

    int OpenLog();
    void CloseLog();
    // Shifts the files up by one number once the current file has reached
    // the size limit.
    int BackupCheck();

    int WriteLog(const std::string& text);
    int WriteLog(const std::uint8_t* data, int length);
    int LogMessage(const char* format, ...) VAGENT_PRINTF_FORMAT(2, 3);

    const std::string& GetLogDir() const { return logDir_; }
    const std::string& GetLogName() const { return logName_; }
    std::int32_t GetFileCount() const { return fileCount_; }
    std::int32_t GetMaxFileSize() const { return maxFileSize_; }
    std::int32_t GetLogLevel() const { return logLevel_; }
    std::int32_t GetMsgLevel() const { return msgLevel_; }
    std::int32_t GetMsgType() const { return msgType_; }
    std::int32_t GetPara1() const { return para1_; }
    std::int32_t GetPara2() const { return para2_; }
    std::int32_t GetPara3() const { return para3_; }
    const std::string& GetHostAddress() const { return hostAddress_; }
    bool IsOpen() const { return file_ != nullptr; }

private:
    friend int DllLogPrintf(const char* format, ...);

    // Prints the text and its line end on standard output, then writes it.
    int LogText(const std::string& text);
    std::string BasePath() const;
    std::string NumberedPath(std::int32_t number) const;
    void CloseFile();
    void FlushOrClose(bool written);
    void CopySettings(const VLog& other);

    std::string logDir_;
    std::string logName_;
    std::int32_t fileCount_ = kDefaultFileCount;
    std::int32_t maxFileSize_ = kDefaultMaxFileSize;
    std::FILE* file_ = nullptr;
    std::int32_t logLevel_ = 6;
    std::int32_t msgLevel_ = 6;
    std::int32_t msgType_ = 2;
    std::int32_t para3_ = 0;
    std::int32_t para1_ = 0;
    std::int32_t para2_ = 0;
    std::string hostAddress_;
};
