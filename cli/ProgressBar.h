#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <iosfwd>
#include <mutex>
#include <string>
#include <thread>

namespace vagentctl {

// A one-line progress display on a terminal for the lifetime of the object:
// the bytes the transfer meter has counted, the rate, and the share of an
// upload whose size is known. It redraws a few times a second and leaves a
// final line behind.
class ProgressBar {
public:
    ProgressBar(std::ostream& err, std::uint64_t expectedBytes, std::uint64_t expectedFiles);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    // The line for this many bytes after this many seconds.
    static std::string Line(std::uint64_t bytes, double seconds, std::uint64_t expectedBytes,
                            std::uint64_t expectedFiles);

private:
    void Redraw();
    void Draw();

    std::ostream& err_;
    std::uint64_t expectedBytes_;
    std::uint64_t expectedFiles_;
    std::chrono::steady_clock::time_point start_;
    std::mutex lock_;
    std::condition_variable stop_;
    bool stopping_ = false;
    std::thread thread_;
};

}  // namespace vagentctl
