#include "tool/progress_bar.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "tool/console.h"

namespace tool {

namespace {

constexpr unsigned int BAR_WIDTH = 30;
constexpr unsigned int LEAST_BAR_WIDTH = 5;
/// The brackets and the blank after them.
constexpr unsigned int BAR_EXTRA = 3;

std::string format_bar(const Progress& progress, unsigned int width) {
    const auto filled =
        progress.total == 0
            ? width
            : static_cast<unsigned int>(std::uint64_t(width) * progress.done / progress.total);
    return fmt::format("[{:#<{}}{:.<{}}] ", "", filled, "", width - filled);
}

std::string format_rate(double rate) {
    return rate < 0.1 ? fmt::format("  {:.1f} s/frame", 1 / rate) : fmt::format("  {:.1f} frames/s", rate);
}

/// "0:04", "1:15:03".
std::string format_time(double seconds) {
    const auto rounded = static_cast<unsigned long long>(std::min(seconds, 1e9) + 0.5);
    const unsigned long long hours = rounded / 3600, minutes = rounded / 60 % 60;
    return hours > 0 ? fmt::format("{}:{:02}:{:02}", hours, minutes, rounded % 60)
                     : fmt::format("{}:{:02}", minutes, rounded % 60);
}

} // namespace

std::string format_progress(const Progress& progress, unsigned int width) {
    const std::string count = fmt::format("{}/{}", progress.done, progress.total);
    const std::string frames =
        count + " frames" + (progress.failed > 0 ? fmt::format(", {} failed", progress.failed) : "");
    std::string rate, left;
    if (progress.converted > 0 && progress.seconds > 0) {
        const double per_second = progress.converted / progress.seconds;
        rate = format_rate(per_second);
        left = "  " + format_time((progress.total - progress.done) / per_second) + " left";
    }
    const std::string whole = frames + rate + left;
    if (whole.size() + LEAST_BAR_WIDTH + BAR_EXTRA <= width) {
        const auto room = static_cast<unsigned int>(width - whole.size() - BAR_EXTRA);
        return format_bar(progress, std::min(BAR_WIDTH, room)) + whole;
    }
    for (const std::string& text : {whole, frames + left, count + left, count})
        if (text.size() <= width)
            return text;
    return "";
}

ProgressBar::ProgressBar(Console& console, unsigned int total)
    : console(console), start(std::chrono::steady_clock::now()) {
    progress.total = total;
    show();
}

ProgressBar::~ProgressBar() {
    console.set_status("");
}

void ProgressBar::advance(Step step) {
    ++progress.done;
    progress.converted += step == Step::CONVERTED ? 1 : 0;
    progress.failed += step == Step::FAILED ? 1 : 0;
    progress.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    show();
}

void ProgressBar::show() {
    if (console.shows_status())
        console.set_status(format_progress(progress, console.get_status_width()));
}

} // namespace tool
