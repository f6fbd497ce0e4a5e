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
    std::uint64_t pixels = 0;  ///< Of the converted images.
    double seconds = 0;        ///< Of the whole run.
    bool is_cancelled = false; ///< Not all images were tried.
};

/// What happens while a sequence is converted. Called from several threads, never two at once; all may be
/// empty.
struct SequenceEvents {
    /// An image failed, or something about several images is worth knowing, which is said once.
    std::function<void(const diagnostics::Diagnostic&)> report;
    /// `done` of `count` images were tried.
    std::function<void(std::size_t done, std::size_t count)> progress;
    /// When this becomes true, no further image is begun; null for never.
    const std::atomic<bool>* cancel = nullptr;
};

/// Converts images side by side, so that reading one, converting another and writing a third overlap; only a
/// few are in memory at a time, however long the sequence. An image that fails does not stop the others.
SequenceReport convert_sequence(const std::vector<ImageJob>& jobs, const ImageSettings& settings,
                                const SequenceEvents& events);

} // namespace workflow
