#include "helpers/LogCapture.h"

#include <regex>
#include <sstream>

#include "fakes/FakeHostFacts.h"
#include "os/HostFacts.h"
#include "vagent/DllLog.h"
#include "vagent/VLog.h"

namespace vagent::test {

std::vector<LogLine> ParseLogLines(const std::string& contents) {
    static const std::regex kLine(
        R"(^(\d{4}/\d{2}/\d{2} \d{2}:\d{2}:\d{2}\.\d{3}) \| (-?\d+) \| (-?\d+) \| (.*)$)");
    std::vector<LogLine> lines;
    std::istringstream in(contents);
    std::string raw;
    while (std::getline(in, raw)) {
        if (!raw.empty() && raw.back() == '\r') {
            raw.pop_back();
        }
        std::smatch match;
        LogLine line;
        if (std::regex_match(raw, match, kLine)) {
            line.stamp = match[1];
            line.level = std::stoi(match[2]);
            line.type = std::stoi(match[3]);
            line.text = match[4];
        } else {
            line.level = -1;
            line.type = -1;
            line.text = raw;
        }
        lines.push_back(line);
    }
    return lines;
}

LogCapture::LogCapture() {
    FakeHostFacts host;
    host.executablePath = directory_.LibraryPath() + "host.exe";
    {
        os::ScopedFacility<os::HostFacts> scope(host);
        log_ = std::make_unique<VLog>();
    }
    SetDllLog(log_.get());
}

LogCapture::~LogCapture() {
    SetDllLog(nullptr);
    log_->CloseLog();
}

std::vector<LogLine> LogCapture::Lines() const {
    return ParseLogLines(ReadWholeFile(directory_ / "AgentLog0.log"));
}

std::vector<std::string> LogCapture::Texts() const {
    std::vector<std::string> texts;
    for (const LogLine& line : Lines()) {
        texts.push_back(line.text);
    }
    return texts;
}

}  // namespace vagent::test
