#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "HostList.h"
#include "HostOutcome.h"
#include "ResultPrinter.h"

namespace vagentctl {

// Runs one command over many hosts with at most `workers` at once, handing
// each outcome to the printer as soon as that host is done. A host that does
// not answer holds up only its own worker.
class FanOut {
public:
    using Job = std::function<HostOutcome(const HostSpec&)>;

    explicit FanOut(unsigned workers) : workers_(workers == 0 ? 1 : workers) {}

    // The number of hosts that failed.
    std::size_t Run(const std::vector<HostSpec>& hosts, const Job& job, ResultPrinter& printer);

private:
    unsigned workers_;
};

}  // namespace vagentctl
