#include "ResultPrinter.h"

#include <cstdio>
#include <ostream>

#include "TextView.h"

namespace vagentctl {
namespace {

constexpr std::uint32_t kCustomerBit = 1u << 29;

}  // namespace

std::string CodeText(std::uint32_t code) {
    if ((code & kCustomerBit) == 0) {
        return std::to_string(code);
    }
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(code));
    return text;
}

ResultPrinter::ResultPrinter(std::ostream& out, std::ostream& err, bool json, bool nameHosts)
    : out_(out), err_(err), json_(json), nameHosts_(nameHosts) {}

void ResultPrinter::Print(const std::string& host, const HostOutcome& outcome) {
    std::lock_guard<std::mutex> hold(lock_);
    if (json_) {
        PrintJson(host, outcome);
    } else {
        PrintText(host, outcome);
    }
}

void ResultPrinter::PrintJson(const std::string& host, const HostOutcome& outcome) {
    nlohmann::ordered_json line = {{"host", host}, {"ok", outcome.ok}};
    if (outcome.ok) {
        line["result"] = outcome.result;
    } else {
        line["error"] = {{"code", outcome.code}, {"text", outcome.text}};
    }
    out_ << line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace)
         << std::endl;
}

void ResultPrinter::PrintText(const std::string& host, const HostOutcome& outcome) {
    if (!outcome.ok) {
        err_ << "vagentctl: " << host << ": " << outcome.text << " (error "
             << CodeText(outcome.code) << ")" << std::endl;
        return;
    }
    const std::string prefix = nameHosts_ ? host + ": " : std::string();
    for (const std::string& line : TextLines(outcome.result)) {
        out_ << prefix << line << '\n';
    }
    out_ << std::flush;
}

}  // namespace vagentctl
