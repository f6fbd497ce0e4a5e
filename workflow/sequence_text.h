#pragma once

#include <string>

#include "workflow/frame_jobs.h"
#include "workflow/sequence.h"

namespace workflow {

/// "converted", "up-to-date", "planned" or "failed".
const char* get_name(ImageOutcome::Status status);

/// What a plan does with an image: "up to date", "would convert (no output)".
std::string describe_plan(const ImageOutcome& outcome);

/// The result of one image: "1920 x 1080 half, 2.07 Mpixel in 0.100 s, 20.7 Mpixel/s; converted rgba", or "up
/// to date"; empty when it failed.
std::string summarize_image(const SequenceReport& report, const ImageReport& image);
/// "12 frames converted, 1 failed, 2.07 Mpixel in 0.100 s, 20.7 Mpixel/s".
std::string summarize_sequence(const SequenceReport& report, const FrameJobs& found);

/// The failures of a sequence; of more than 10 of one kind (with the same code, subject and hint) the first
/// three, and an error that names the frames of the others.
diagnostics::Diagnostics shorten_failures(const SequenceReport& report);

} // namespace workflow
