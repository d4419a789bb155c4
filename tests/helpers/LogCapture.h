#pragma once

#include <memory>
#include <string>
#include <vector>

#include "helpers/TempDir.h"

class VLog;

namespace vagent::test {

// One line of a log file, its time stamp set aside.
struct LogLine {
    std::string stamp;
    int level = 0;
    int type = 0;
    std::string text;
};

// Splits a log file's text into lines; a line that lacks the stamp and the
// two number columns is kept whole in text with level and type -1.
std::vector<LogLine> ParseLogLines(const std::string& contents);

// Installs a log that writes into a fresh directory for the scope's lifetime,
// so that a test can read back what the library wrote.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    VLog& Log() { return *log_; }
    const TempDir& Directory() const { return directory_; }
    std::vector<LogLine> Lines() const;
    // The text of every line, in order.
    std::vector<std::string> Texts() const;

private:
    TempDir directory_;
    std::unique_ptr<VLog> log_;
};

}  // namespace vagent::test
