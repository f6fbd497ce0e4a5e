#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "workflow/image_job.h"

namespace workflow {

/// Result for one image.
struct ImageOutcome {
    enum Status {
        CONVERTED,  ///< Converted now.
        UP_TO_DATE, ///< Converted earlier, and not again.
        PLANNED,    ///< Would be converted.
        FAILED      ///< Not converted; an existing output is unchanged.
    };

    explicit ImageOutcome(const ImageJob& job) : job(job) {}

    const ImageJob& job;
    Status status = CONVERTED;
    std::string reason; ///< Why it is not up to date; empty if that was not checked.
    ImageReport image;  ///< Of a converted image; of a planned one the layers.
    double seconds = 0; ///< Elapsed time of a converted image.
    std::optional<diagnostics::Diagnostic> error; ///< Of an image that failed.
};

/// Result of converting a sequence.
struct SequenceReport {
    unsigned int converted = 0;
    unsigned int up_to_date = 0;
    unsigned int planned = 0;
    unsigned int failed = 0;
    diagnostics::Diagnostics failures; ///< One for each image that failed, in the order of the jobs.
    std::vector<int> failed_frames;    ///< Their frame numbers; 0 for images without one.
    std::uint64_t pixels = 0;          ///< Pixels of the converted images.
    double seconds = 0;                ///< Elapsed time.
    LayerReport layers;                ///< Of the first image that was converted or planned.
    bool is_cancelled = false;         ///< Some images were not processed.
};

/// Options of a sequence.
struct SequenceOptions {
    bool resumes = false;    ///< Images whose output is up to date are not converted again.
    bool only_plans = false; ///< Nothing is converted; what the headers of an image forbid is its error.
    /// Bytes that the program may take: images in flight, the processes that read them, and what is in use at
    /// the start. 0 for no limit. An image that needs more is converted alone.
    std::uint64_t memory = 0;
};

/// Callbacks of `convert_sequence`. Called from several threads, but never at the same time; may be empty.
struct SequenceEvents {
    /// Reports a note; equal notes of several images are reported once, with the first of them as the file.
    std::function<void(const diagnostics::Diagnostic&)> report;
    /// Called once for each image, in the order in which they are finished.
    std::function<void(const ImageOutcome&)> finished;
    /// Set it to true to start no further image; may be null.
    const std::atomic<bool>* cancel = nullptr;
};

/// Converts as many images at the same time as there are cores and memory for, so that reading, converting
/// and writing overlap. An image that fails does not stop the others. Throws only what is not the error of an
/// image, such as an exception of a callback.
SequenceReport convert_sequence(const std::vector<ImageJob>& jobs, const ImageSettings& settings,
                                const SequenceEvents& events, const SequenceOptions& options = {});

} // namespace workflow
