#include "tool/progress_bar.h"

#include <algorithm>

#include <fmt/format.h>

#include "tool/console.h"

namespace tool {

namespace {

constexpr unsigned int BAR_WIDTH = 30;

} // namespace

std::string format_progress(unsigned int done, unsigned int total, double seconds) {
    const unsigned int filled =
        total == 0 ? BAR_WIDTH : static_cast<unsigned int>(std::uint64_t(BAR_WIDTH) * done / total);
    std::string text =
        fmt::format("[{:#<{}}{:.<{}}] {}/{} frames", "", filled, "", BAR_WIDTH - filled, done, total);
    if (done == 0 || seconds <= 0.0)
        return text;
    const double rate = done / seconds;
    const auto left = static_cast<unsigned int>((total - std::min(done, total)) / rate + 0.5);
    return text + fmt::format("  {:.1f} frames/s  {}:{:02} left", rate, left / 60, left % 60);
}

ProgressBar::ProgressBar(Console& console, unsigned int total)
    : console(console), total(total), start(std::chrono::steady_clock::now()) {
    console.set_status(format_progress(0, total, 0.0));
}

ProgressBar::~ProgressBar() {
    console.set_status("");
}

void ProgressBar::advance() {
    std::lock_guard<std::mutex> lock(mutex);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    console.set_status(format_progress(++done, total, elapsed.count()));
}

} // namespace tool
