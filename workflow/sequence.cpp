#include "workflow/sequence.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <filesystem>
#include <mutex>
#include <set>
#include <string>
#include <system_error>
#include <thread>

#include "diagnostics/failure.h"

namespace workflow {

namespace {

/// Images in memory at a time: enough to read one and write another while two are converted.
constexpr unsigned int MAX_LANES = 4;

class SequenceConversion {
public:
    SequenceConversion(const std::vector<ImageJob>& jobs, const ImageSettings& settings,
                       const SequenceEvents& events)
        : jobs(jobs), settings(settings), events(events) {}

    SequenceReport run() {
        const auto start = std::chrono::steady_clock::now();
        ImageBuffers buffers;
        buffers.reader.set_threads(count_reading_threads());
        buffers.reader.is_ready(); // started before the other lanes: the system may allow one process only
        std::vector<std::thread> lanes;
        lanes.reserve(MAX_LANES);
        start_lanes(lanes);
        run_lane([&] { convert_next_ones(buffers); });
        for (std::thread& lane : lanes)
            lane.join();
        if (failure)
            std::rethrow_exception(failure);
        report.is_cancelled = report.converted + report.failed < jobs.size();
        report.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        return report;
    }

private:
    unsigned int count_threads() const {
        return settings.threads > 0 ? static_cast<unsigned int>(settings.threads)
                                    : std::max(1u, std::thread::hardware_concurrency());
    }

    /// For each of the processes that read: the lanes keep the cores busy already, and handing rows from
    /// thread to thread takes time.
    int count_reading_threads() const {
        return static_cast<int>(std::max(1u, count_threads() / count_lanes()));
    }

    unsigned int count_lanes() const {
        const unsigned int cores = count_threads();
        const auto images = static_cast<unsigned int>(std::min<std::size_t>(jobs.size(), MAX_LANES));
        return std::clamp(cores, 1u, std::max(images, 1u));
    }

    /// Starts the lanes after the first; fewer if the system cannot start more threads.
    void start_lanes(std::vector<std::thread>& lanes) {
        try {
            for (unsigned int i = 1; i < count_lanes(); ++i)
                lanes.emplace_back([this] { run_lane([this] { convert_with_own_buffers(); }); });
        } catch (const std::system_error&) {
        }
    }

    /// Catches all exceptions of a lane. One that is not the error of a single image ends all lanes; `run`
    /// throws it again.
    template <class Work>
    void run_lane(const Work& work) {
        try {
            work();
        } catch (...) {
            std::lock_guard<std::mutex> lock(mutex);
            failure = std::current_exception();
            next = jobs.size();
        }
    }

    /// Does nothing if the system cannot start another reader process; the other lanes convert all images.
    void convert_with_own_buffers() {
        ImageBuffers buffers;
        buffers.reader.set_threads(count_reading_threads());
        if (buffers.reader.is_ready())
            convert_next_ones(buffers);
    }

    /// Reads, converts and writes the next image until none is left.
    void convert_next_ones(ImageBuffers& buffers) {
        for (std::size_t index; !is_cancelled() && (index = next++) < jobs.size(); advance()) {
            try {
                add(convert_image(jobs[index], settings, buffers));
            } catch (const std::exception& error) {
                add_failure(describe_failure(jobs[index].input, error));
            }
        }
    }

    static diagnostics::Diagnostic describe_failure(const std::string& input, const std::exception& error) {
        diagnostics::Diagnostic reason = diagnostics::describe(error);
        std::error_code unreadable;
        if (reason.file == input && !std::filesystem::exists(input, unreadable) && !unreadable)
            reason.code = diagnostics::Code::FRAMES_MISSING;
        return reason;
    }

    bool is_cancelled() const { return events.cancel && *events.cancel; }

    void advance() {
        std::lock_guard<std::mutex> lock(mutex);
        ++done;
        if (events.progress)
            events.progress(done, jobs.size());
    }

    void add(const ImageReport& image) {
        std::lock_guard<std::mutex> lock(mutex);
        if (report.converted++ == 0)
            report.layers = image.layers;
        report.pixels += image.pixels;
        for (const std::string& note : image.notes)
            if (known_notes.insert(note).second)
                notify(diagnostics::make_note(diagnostics::Code::IMAGE_ADAPTED, note));
    }

    void add_failure(const diagnostics::Diagnostic& reason) {
        std::lock_guard<std::mutex> lock(mutex);
        ++report.failed;
        notify(reason);
    }

    void notify(const diagnostics::Diagnostic& diagnostic) const {
        if (events.report)
            events.report(diagnostic);
    }

    const std::vector<ImageJob>& jobs;
    const ImageSettings& settings;
    const SequenceEvents& events;
    std::atomic<std::size_t> next{0};
    std::size_t done = 0;
    std::mutex mutex;
    std::exception_ptr failure;
    SequenceReport report;
    std::set<std::string> known_notes;
};

} // namespace

SequenceReport convert_sequence(const std::vector<ImageJob>& jobs, const ImageSettings& settings,
                                const SequenceEvents& events) {
    return SequenceConversion(jobs, settings, events).run();
}

} // namespace workflow
