#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "workflow/sequence.h"

namespace python {

/// The result of one image of a sequence.
struct Frame {
    workflow::ImageJob job;
    workflow::ImageOutcome::Status status;
    std::string reason;
    double seconds = 0;
    workflow::ImageReport image;
    std::optional<diagnostics::Diagnostic> error;
};

/// What `convert_sequence` needs.
struct SequenceWork {
    std::vector<workflow::ImageJob> jobs;
    workflow::ImageSettings settings;
    workflow::SequenceOptions options;
};

/// A sequence that is converted by other threads. Its owner is the thread of the interpreter that waits for
/// it, with the interpreter's lock.
class SequenceRun {
public:
    /// Starts. Throws std::system_error when no thread can be started.
    explicit SequenceRun(const SequenceWork& work);
    /// Starts no further image, and waits for those that are being converted.
    ~SequenceRun();
    SequenceRun(const SequenceRun&) = delete;
    SequenceRun& operator=(const SequenceRun&) = delete;

    /// Calls `finished` for every image, until all are finished. Lets other threads of Python run while it
    /// waits. Passes on exceptions of `finished`, and the KeyboardInterrupt or what else a signal handler
    /// raises.
    workflow::SequenceReport wait(const std::function<void(const Frame&)>& finished);

    /// Notes about the images, after `wait`.
    const diagnostics::Diagnostics& get_notes() const { return notes; }

private:
    void convert();
    /// Waits for more frames or the end, for a moment at most. True at the end.
    bool take(std::deque<Frame>& frames);

    const SequenceWork& work;
    std::atomic<bool> is_cancelled{false};
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Frame> finished_frames;
    bool is_done = false;
    workflow::SequenceReport report;
    std::exception_ptr failure;
    diagnostics::Diagnostics notes;
    std::thread thread; ///< Started last.
};

} // namespace python
