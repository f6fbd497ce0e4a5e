#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "workflow/image_job.h"

namespace workflow {

/// Result of converting a sequence.
struct SequenceReport {
    unsigned int converted = 0;
    unsigned int failed = 0;
    std::uint64_t pixels = 0;  ///< Pixels of the converted images.
    double seconds = 0;        ///< Elapsed time.
    LayerReport layers;        ///< Of the first converted image.
    bool is_cancelled = false; ///< Not all images were converted or failed.
};

/// Callbacks of `convert_sequence`. Called from several threads, but never at the same time; may be empty.
struct SequenceEvents {
    /// Reports the error of an image, or a note; equal notes of several images are reported once.
    std::function<void(const diagnostics::Diagnostic&)> report;
    /// `done` of `count` images were converted or failed.
    std::function<void(std::size_t done, std::size_t count)> progress;
    /// Set it to true to start no further image; may be null.
    const std::atomic<bool>* cancel = nullptr;
};

/// Converts up to four images at the same time, so that reading, converting and writing overlap. An image
/// that fails does not stop the others. Throws only what is not the error of an image, such as an exception
/// of a callback.
SequenceReport convert_sequence(const std::vector<ImageJob>& jobs, const ImageSettings& settings,
                                const SequenceEvents& events);

} // namespace workflow
