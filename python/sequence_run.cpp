#include "python/sequence_run.h"

#include <chrono>
#include <utility>

#include <pybind11/pybind11.h>

namespace py = pybind11;

namespace python {

namespace {

/// How long an interrupt may wait to be seen.
constexpr std::chrono::milliseconds PERIOD(50);

} // namespace

SequenceRun::SequenceRun(const SequenceWork& work) : work(work), thread([this] { convert(); }) {}

SequenceRun::~SequenceRun() {
    is_cancelled = true;
    const py::gil_scoped_release unlocked;
    thread.join();
}

void SequenceRun::convert() {
    workflow::SequenceEvents events;
    events.cancel = &is_cancelled;
    events.report = [this](const diagnostics::Diagnostic& note) { notes.push_back(note); };
    events.finished = [this](const workflow::ImageOutcome& outcome) {
        const std::lock_guard<std::mutex> lock(mutex);
        finished_frames.push_back(
            {outcome.job, outcome.status, outcome.reason, outcome.seconds, outcome.image, outcome.error});
        changed.notify_one();
    };
    try {
        report = workflow::convert_sequence(work.jobs, work.settings, events, work.options);
    } catch (...) {
        failure = std::current_exception();
    }
    const std::lock_guard<std::mutex> lock(mutex);
    is_done = true;
    changed.notify_one();
}

bool SequenceRun::take(std::deque<Frame>& frames) {
    const py::gil_scoped_release unlocked;
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait_for(lock, PERIOD, [this] { return is_done || !finished_frames.empty(); });
    frames = std::exchange(finished_frames, {});
    return is_done;
}

workflow::SequenceReport SequenceRun::wait(const std::function<void(const Frame&)>& finished) {
    for (bool is_last = false; !is_last;) {
        std::deque<Frame> frames;
        is_last = take(frames);
        for (const Frame& frame : frames)
            finished(frame);
        if (PyErr_CheckSignals() != 0)
            throw py::error_already_set();
    }
    if (failure)
        std::rethrow_exception(failure);
    return std::move(report);
}

} // namespace python
