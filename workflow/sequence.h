#pragma once

#include <cstdint>
#include <vector>

#include "workflow/image_job.h"

namespace tool {

class Console;

struct SequenceReport {
    unsigned int converted = 0;
    unsigned int failed = 0;
    std::uint64_t pixels = 0; ///< Of the converted pictures.
    double seconds = 0;       ///< Of the whole run.
};

/// Converts pictures side by side, so that reading one, converting another and writing a third overlap; only
/// a few are in memory at a time, however long the sequence. A picture that fails is reported to the console
/// and the others go on. What is to be noted about several pictures is said once.
SequenceReport convert_sequence(const std::vector<PictureJob>& jobs, const PictureSettings& settings,
                                Console& console);

} // namespace tool
