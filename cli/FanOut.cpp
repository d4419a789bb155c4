#include "FanOut.h"

#include <algorithm>
#include <atomic>
#include <thread>

namespace vagentctl {

std::size_t FanOut::Run(const std::vector<HostSpec>& hosts, const Job& job,
                        ResultPrinter& printer) {
    std::atomic<std::size_t> next{0};
    std::atomic<std::size_t> failures{0};
    const auto work = [&] {
        for (std::size_t i = next++; i < hosts.size(); i = next++) {
            const HostOutcome outcome = job(hosts[i]);
            if (!outcome.ok) {
                ++failures;
            }
            printer.Print(hosts[i].label, outcome);
        }
    };
    const std::size_t count = std::min<std::size_t>(workers_, hosts.size());
    std::vector<std::thread> threads;
    for (std::size_t i = 1; i < count; ++i) {
        threads.emplace_back(work);
    }
    work();
    for (std::thread& thread : threads) {
        thread.join();
    }
    return failures;
}

}  // namespace vagentctl
