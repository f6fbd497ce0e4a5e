#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "workflow/image_job.h"

namespace workflow {

/// What a pair of paths stands for: one image, or the frames of a sequence.
struct FrameJobs {
    std::vector<ImageJob> jobs;    ///< In the order of the frame range.
    std::vector<ImageJob> missing; ///< Frames without an image to read.
    bool is_sequence = false;
    bool is_range_given = false; ///< The missing frames were asked for.
};

/// The image of two paths, or the frames of two patterns (FramePattern): those of the frame range `frames`,
/// or without one those that exist; frames between them are then missing. A pattern that is the name of an
/// existing file is a single image. Throws diagnostics::Failure for a pattern on one side only, for an
/// invalid range, when no frame exists, and when the output of a frame is the input of another one.
FrameJobs find_frame_jobs(const std::string& input, const std::string& output, std::string_view frames);

/// Names the missing frames as ranges: an error if they were asked for, else a warning. Nothing without any.
std::optional<diagnostics::Diagnostic> describe_missing(const FrameJobs& found, const std::string& input);

} // namespace workflow
