#include "SecretLines.h"

#include <CLI/CLI.hpp>

#include <istream>
#include <ostream>

#include "platform/Console.h"

namespace vagentctl {
namespace {

// Typed secrets are not shown; echo comes back on every way out.
class EchoOff {
public:
    EchoOff() : wasOn_(platform::SetInputEcho(false)) {}
    ~EchoOff() { platform::SetInputEcho(wasOn_); }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;

private:
    bool wasOn_;
};

std::string WithoutLineEnd(std::string line) {
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return line;
}

std::vector<std::string> TypedLines(ConsoleStreams& console, const std::string& prompt) {
    console.err << prompt << " (an empty line ends): " << std::flush;
    EchoOff echoOff;
    std::vector<std::string> lines;
    std::string line;
    while (std::getline(console.in, line) && !WithoutLineEnd(line).empty()) {
        lines.push_back(WithoutLineEnd(line));
    }
    console.err << '\n';
    return lines;
}

}  // namespace

std::vector<std::string> ReadSecretLines(ConsoleStreams& console, const std::string& prompt) {
    if (console.inputIsTerminal) {
        return TypedLines(console, prompt);
    }
    std::vector<std::string> lines;
    std::string line;
    while (std::getline(console.in, line)) {
        line = WithoutLineEnd(line);
        if (!line.empty()) {
            lines.push_back(line);
        }
    }
    return lines;
}

std::vector<std::string> SplitFields(const std::string& line, std::size_t count,
                                     const std::string& shape) {
    std::vector<std::string> fields;
    std::size_t start = 0;
    while (fields.size() + 1 < count) {
        const std::size_t colon = line.find(':', start);
        if (colon == std::string::npos) {
            throw CLI::ValidationError("standard input", "a line is not of the form " + shape);
        }
        fields.push_back(line.substr(start, colon - start));
        start = colon + 1;
    }
    fields.push_back(line.substr(start));
    return fields;
}

}  // namespace vagentctl
