#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workflow/image_job.h"

namespace workflow {

/// The images of a sequence: one job for each frame of the range, with the paths that the two patterns give
/// it. Throws diagnostics::Failure for an invalid range.
std::vector<ImageJob> make_frame_jobs(const std::string& input_pattern, const std::string& output_pattern,
                                      std::string_view frames);

} // namespace workflow
