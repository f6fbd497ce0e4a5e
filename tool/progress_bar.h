#pragma once

#include <chrono>
#include <string>

namespace tool {

class Console;

/// How far a sequence is.
struct Progress {
    unsigned int done = 0;
    unsigned int total = 0;
    unsigned int converted = 0; ///< Of those done: the rate is theirs.
    unsigned int failed = 0;
    double seconds = 0; ///< Elapsed.
};

/// The text of the bar: "[#####.....] 12/24 frames  3.4 frames/s  0:04 left", in at most `width` columns:
/// where it does not fit, the bar gets shorter, then the text.
std::string format_progress(const Progress& progress, unsigned int width);

/// Progress of a sequence, shown on a terminal only. The destructor removes it. For one thread at a time.
class ProgressBar {
public:
    ProgressBar(Console& console, unsigned int total);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    enum class Step { CONVERTED, SKIPPED, FAILED };
    void advance(Step step);

private:
    void show();

    Console& console;
    Progress progress;
    const std::chrono::steady_clock::time_point start;
};

} // namespace tool
