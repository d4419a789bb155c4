#pragma once

#include <iosfwd>
#include <mutex>
#include <string>

#include "HostOutcome.h"

namespace vagentctl {

// Prints each host's outcome as soon as it is known, whole, even when
// several workers finish at once. With JSON, one object per line on standard
// output; otherwise the result as text (each line prefixed with the host
// when there are several) and errors on standard error, naming the host.
class ResultPrinter {
public:
    ResultPrinter(std::ostream& out, std::ostream& err, bool json, bool nameHosts);

    void Print(const std::string& host, const HostOutcome& outcome);

private:
    void PrintJson(const std::string& host, const HostOutcome& outcome);
    void PrintText(const std::string& host, const HostOutcome& outcome);

    std::ostream& out_;
    std::ostream& err_;
    bool json_;
    bool nameHosts_;
    std::mutex lock_;
};

// "10061", or "0xE6000001" for the codes that are not the system's.
std::string CodeText(std::uint32_t code);

}  // namespace vagentctl
