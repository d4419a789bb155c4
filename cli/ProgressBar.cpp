#include "ProgressBar.h"

#include <cstdio>
#include <ostream>

#include "TransferMeter.h"

namespace vagentctl {
namespace {

constexpr auto kRedrawEvery = std::chrono::milliseconds(200);

std::string Amount(double bytes) {
    static const char* const kUnits[] = {"B", "KiB", "MiB", "GiB", "TiB"};
    std::size_t unit = 0;
    while (bytes >= 1024.0 && unit + 1 < sizeof kUnits / sizeof kUnits[0]) {
        bytes /= 1024.0;
        ++unit;
    }
    char text[32];
    std::snprintf(text, sizeof text, unit == 0 ? "%.0f %s" : "%.1f %s", bytes, kUnits[unit]);
    return text;
}

}  // namespace

ProgressBar::ProgressBar(std::ostream& err, std::uint64_t expectedBytes,
                         std::uint64_t expectedFiles)
    : err_(err),
      expectedBytes_(expectedBytes),
      expectedFiles_(expectedFiles),
      start_(std::chrono::steady_clock::now()),
      thread_([this] { Redraw(); }) {}

ProgressBar::~ProgressBar() {
    {
        std::lock_guard<std::mutex> hold(lock_);
        stopping_ = true;
    }
    stop_.notify_all();
    thread_.join();
    Draw();
    err_ << std::endl;
}

std::string ProgressBar::Line(std::uint64_t bytes, double seconds, std::uint64_t expectedBytes,
                              std::uint64_t expectedFiles) {
    std::string line = Amount(static_cast<double>(bytes));
    if (expectedBytes > 0) {
        // Frames and names travel besides the contents, so the share stops
        // at its whole.
        const std::uint64_t percent = bytes >= expectedBytes ? 100 : bytes * 100 / expectedBytes;
        line = std::to_string(percent) + "% " + line + " of " +
               Amount(static_cast<double>(expectedBytes));
    }
    const double rate = seconds > 0 ? static_cast<double>(bytes) / seconds : 0.0;
    line += "  " + Amount(rate) + "/s";
    if (expectedFiles > 0) {
        line += "  " + std::to_string(expectedFiles) + " files";
    }
    return line;
}

void ProgressBar::Redraw() {
    std::unique_lock<std::mutex> hold(lock_);
    while (!stop_.wait_for(hold, kRedrawEvery, [this] { return stopping_; })) {
        Draw();
    }
}

void ProgressBar::Draw() {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
    const std::uint64_t bytes = TransferMeter::SentBytes() + TransferMeter::ReceivedBytes();
    err_ << "\r\x1b[K" << Line(bytes, elapsed.count(), expectedBytes_, expectedFiles_)
         << std::flush;
}

}  // namespace vagentctl
