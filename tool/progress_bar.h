#pragma once

#include <chrono>
#include <mutex>
#include <string>

namespace tool {

class Console;

/// The text of the bar: "[#####.....] 12/24 frames  3.4 frames/s  0:04 left". `seconds` is the time elapsed.
std::string format_progress(unsigned int done, unsigned int total, double seconds);

/// Progress of a sequence, shown on a terminal only. The destructor removes it. Thread-safe.
class ProgressBar {
public:
    ProgressBar(Console& console, unsigned int total);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void advance();

private:
    Console& console;
    const unsigned int total;
    unsigned int done = 0;
    const std::chrono::steady_clock::time_point start;
    std::mutex mutex;
};

} // namespace tool
