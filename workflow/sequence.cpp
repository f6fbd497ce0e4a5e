#include "workflow/sequence.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <filesystem>
#include <limits>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "diagnostics/failure.h"
#include "image/format_abilities.h"
#include "workflow/finished_images.h"

namespace workflow {

namespace {

using Clock = std::chrono::steady_clock;

double get_seconds_since(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Hands the jobs to lanes, each of which works on one image at a time. Thread-safe.
class JobQueue {
public:
    JobQueue(std::size_t count, const std::atomic<bool>* cancel) : count(count), cancel(cancel) {}

    void add_lane() {
        std::lock_guard<std::mutex> lock(mutex);
        ++lanes;
    }

    /// The next job; nothing for a lane that has to end.
    std::optional<std::size_t> take() {
        std::lock_guard<std::mutex> lock(mutex);
        const bool is_cancelled = cancel != nullptr && *cancel;
        if (is_cancelled || (returned.empty() && next == count)) {
            --lanes;
            return std::nullopt;
        }
        return returned.empty() ? next++ : returned.extract(returned.begin()).value();
    }

    /// Gives a job to the other lanes, and ends this one. False when there is no other.
    bool hand_back(std::size_t job) {
        std::lock_guard<std::mutex> lock(mutex);
        if (lanes == 1)
            return false;
        --lanes;
        returned.insert(job);
        return true;
    }

    /// Ends all lanes after their current job.
    void stop() {
        std::lock_guard<std::mutex> lock(mutex);
        next = count;
        returned.clear();
    }

private:
    const std::size_t count;
    const std::atomic<bool>* const cancel;
    std::mutex mutex;
    std::size_t next = 0;
    std::set<std::size_t> returned;
    unsigned int lanes = 0; ///< That still take jobs.
};

/// Counts outcomes, and calls the callbacks. Thread-safe.
class OutcomeLog {
public:
    explicit OutcomeLog(const SequenceEvents& events) : events(events) {}

    void add(std::size_t index, const ImageOutcome& outcome) {
        std::lock_guard<std::mutex> lock(mutex);
        const bool is_first = report.converted + report.planned == 0;
        const bool has_layers =
            outcome.status == ImageOutcome::CONVERTED || outcome.status == ImageOutcome::PLANNED;
        if (has_layers && is_first)
            report.layers = outcome.image.layers;
        ++get_count(outcome.status);
        report.pixels += outcome.image.pixels;
        if (outcome.error)
            failures.emplace(index, std::pair(*outcome.error, outcome.job.frame.value_or(0)));
        for (const diagnostics::Diagnostic& note : outcome.image.notes)
            if (known_notes.insert(note.message).second && events.report)
                events.report(note);
        if (events.finished)
            events.finished(outcome);
    }

    SequenceReport take(std::size_t jobs) {
        for (const auto& [index, failure] : failures) {
            report.failures.push_back(failure.first);
            report.failed_frames.push_back(failure.second);
        }
        report.is_cancelled = report.converted + report.up_to_date + report.planned + report.failed < jobs;
        return std::move(report);
    }

private:
    unsigned int& get_count(ImageOutcome::Status status) {
        switch (status) {
        case ImageOutcome::CONVERTED:
            return report.converted;
        case ImageOutcome::UP_TO_DATE:
            return report.up_to_date;
        case ImageOutcome::PLANNED:
            return report.planned;
        case ImageOutcome::FAILED:
            break;
        }
        return report.failed;
    }

    const SequenceEvents& events;
    std::mutex mutex;
    SequenceReport report;
    std::map<std::size_t, std::pair<diagnostics::Diagnostic, int>> failures; ///< With frames, by job.
    std::set<std::string> known_notes; ///< By their messages: images differ in their paths.
};

class SequenceConversion {
public:
    SequenceConversion(const std::vector<ImageJob>& jobs, const ImageSettings& settings,
                       const SequenceEvents& events, const SequenceOptions& options)
        : jobs(jobs), settings(settings), options(options), budget(get_room()),
          queue(jobs.size(), events.cancel), log(events) {}

    SequenceReport run() {
        const Clock::time_point start = Clock::now();
        ImageBuffers buffers(&budget);
        buffers.reader.set_threads(count_reading_threads());
        buffers.reader.is_ready(); // started before the other lanes: the system may allow one process only
        queue.add_lane();
        std::vector<std::thread> lanes;
        lanes.reserve(count_lanes());
        start_lanes(lanes);
        run_lane([&] { convert_next_ones(buffers); });
        buffers.release(); // another lane may wait for its memory
        for (std::thread& lane : lanes)
            lane.join();
        if (failure)
            std::rethrow_exception(failure);
        SequenceReport report = log.take(jobs.size());
        report.seconds = get_seconds_since(start);
        return report;
    }

private:
    /// What is left for images.
    std::uint64_t get_room() const {
        const std::uint64_t used = get_used_memory();
        return options.memory == 0     ? std::numeric_limits<std::uint64_t>::max()
               : options.memory > used ? options.memory - used
                                       : 0;
    }

    unsigned int count_threads() const {
        return settings.threads > 0 ? static_cast<unsigned int>(settings.threads)
                                    : std::max(1u, std::thread::hardware_concurrency());
    }

    /// For each of the processes that read: the lanes keep the cores busy already, and handing rows from
    /// thread to thread takes time.
    int count_reading_threads() const {
        return static_cast<int>(std::max(1u, count_threads() / count_lanes()));
    }

    /// One for each core, because some formats are encoded by a single thread. Those for which there is no
    /// memory end by themselves.
    unsigned int count_lanes() const {
        return static_cast<unsigned int>(
            std::clamp<std::size_t>(jobs.size(), 1, std::max(1u, count_threads())));
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
            queue.stop();
            std::lock_guard<std::mutex> lock(failure_mutex);
            failure = std::current_exception();
        }
    }

    /// Does nothing if the system cannot start another reader process; the other lanes convert all images.
    void convert_with_own_buffers() {
        ImageBuffers buffers(&budget);
        buffers.reader.set_threads(count_reading_threads());
        if (!buffers.reader.is_ready())
            return;
        queue.add_lane();
        convert_next_ones(buffers);
    }

    /// Deals with the next image until none is left, or until another lane has to go on for lack of memory.
    void convert_next_ones(ImageBuffers& buffers) {
        while (const std::optional<std::size_t> index = queue.take()) {
            ImageOutcome outcome(jobs[*index]);
            if (!deal_with(outcome, buffers, WhenFull::GIVE_UP)) {
                if (queue.hand_back(*index))
                    return;
                deal_with(outcome, buffers, WhenFull::WAIT);
            }
            log.add(*index, outcome);
        }
    }

    /// False when it gave up.
    bool deal_with(ImageOutcome& outcome, ImageBuffers& buffers, WhenFull rule) {
        try {
            outcome.status = choose_status(outcome, buffers);
            return outcome.status != ImageOutcome::CONVERTED || convert(outcome, buffers, rule);
        } catch (const std::exception& error) {
            outcome.status = ImageOutcome::FAILED;
            outcome.error = describe_failure(outcome.job, error);
        }
        return true;
    }

    /// CONVERTED for an image that is to be converted.
    ImageOutcome::Status choose_status(ImageOutcome& outcome, ImageBuffers& buffers) const {
        const std::string format = image::get_format_abilities(outcome.job.output).name;
        if (options.resumes) {
            outcome.reason = find_reason_to_convert(outcome.job, settings, buffers.reader);
            if (outcome.reason.empty())
                return ImageOutcome::UP_TO_DATE;
            if (const std::string obstacle = explain_missing_record(format); !obstacle.empty())
                outcome.image.notes = {
                    make_file_note(diagnostics::Code::IMAGE_UNSUPPORTED, obstacle, outcome.job.output)};
        }
        if (!options.only_plans)
            return ImageOutcome::CONVERTED;
        outcome.image.layers = plan_image(outcome.job, settings, buffers.reader);
        return ImageOutcome::PLANNED;
    }

    bool convert(ImageOutcome& outcome, ImageBuffers& buffers, WhenFull rule) const {
        const Clock::time_point start = Clock::now();
        std::optional<ImageReport> report = try_to_convert_image(outcome.job, settings, buffers, rule);
        if (!report)
            return false;
        report->notes.insert(report->notes.end(), outcome.image.notes.begin(), outcome.image.notes.end());
        outcome.image = std::move(*report);
        outcome.seconds = get_seconds_since(start);
        return true;
    }

    static diagnostics::Diagnostic describe_failure(const ImageJob& job, const std::exception& error) {
        diagnostics::Diagnostic reason = diagnostics::describe(error);
        std::error_code unreadable;
        if (job.frame && reason.file == job.input && !std::filesystem::exists(job.input, unreadable) &&
            !unreadable)
            reason.code = diagnostics::Code::FRAMES_MISSING;
        return reason;
    }

    const std::vector<ImageJob>& jobs;
    const ImageSettings& settings;
    const SequenceOptions& options;
    MemoryBudget budget;
    JobQueue queue;
    OutcomeLog log;
    std::mutex failure_mutex;
    std::exception_ptr failure;
};

} // namespace

SequenceReport convert_sequence(const std::vector<ImageJob>& jobs, const ImageSettings& settings,
                                const SequenceEvents& events, const SequenceOptions& options) {
    return SequenceConversion(jobs, settings, events, options).run();
}

} // namespace workflow
