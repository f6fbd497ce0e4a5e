#include "workflow/sequence.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <mutex>
#include <set>
#include <string>
#include <thread>

#include "tool/console.h"
#include "tool/progress_bar.h"

namespace tool {

namespace {

/// Pictures in memory at a time: enough that one is read and one written while others are converted.
constexpr unsigned int MAX_LANES = 4;

class SequenceConversion {
public:
    SequenceConversion(const std::vector<PictureJob>& jobs, const PictureSettings& settings, Console& console)
        : jobs(jobs), settings(settings), console(console),
          progress(console, static_cast<unsigned int>(jobs.size())) {}

    SequenceReport run() {
        const auto start = std::chrono::steady_clock::now();
        std::vector<std::thread> lanes;
        for (unsigned int i = 1; i < count_lanes(); ++i)
            lanes.emplace_back([this] { convert_next_ones(); });
        convert_next_ones();
        for (std::thread& lane : lanes)
            lane.join();
        report.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        return report;
    }

private:
    unsigned int count_lanes() const {
        const unsigned int cores = settings.threads > 0 ? static_cast<unsigned int>(settings.threads)
                                                        : std::thread::hardware_concurrency();
        const auto pictures = static_cast<unsigned int>(std::min<std::size_t>(jobs.size(), MAX_LANES));
        return std::clamp(cores, 1u, std::max(pictures, 1u));
    }

    /// What one lane does: it takes the next picture through all stages until none is left.
    void convert_next_ones() {
        PictureBuffers buffers;
        for (std::size_t index; (index = next++) < jobs.size(); progress.advance()) {
            try {
                add(convert_picture(jobs[index], settings, buffers));
            } catch (const std::exception& error) {
                add_failure(error.what());
            }
        }
    }

    void add(const PictureReport& picture) {
        std::lock_guard<std::mutex> lock(mutex);
        ++report.converted;
        report.pixels += picture.pixels;
        for (const std::string& note : picture.notes)
            if (known_notes.insert(note).second)
                console.note(note);
    }

    void add_failure(const std::string& reason) {
        std::lock_guard<std::mutex> lock(mutex);
        ++report.failed;
        console.error(reason);
    }

    const std::vector<PictureJob>& jobs;
    const PictureSettings& settings;
    Console& console;
    ProgressBar progress;
    std::atomic<std::size_t> next{0};
    std::mutex mutex;
    SequenceReport report;
    std::set<std::string> known_notes;
};

} // namespace

SequenceReport convert_sequence(const std::vector<PictureJob>& jobs, const PictureSettings& settings,
                                Console& console) {
    return SequenceConversion(jobs, settings, console).run();
}

} // namespace tool
