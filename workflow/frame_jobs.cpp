#include "workflow/frame_jobs.h"

#include "workflow/frame_pattern.h"
#include "workflow/frame_range.h"

namespace workflow {

std::vector<ImageJob> make_frame_jobs(const std::string& input_pattern, const std::string& output_pattern,
                                      std::string_view frames) {
    const FramePattern input(input_pattern);
    const FramePattern output(output_pattern);
    std::vector<ImageJob> jobs;
    for (const int frame : parse_frames(frames))
        jobs.push_back({input.get_path(frame), output.get_path(frame)});
    return jobs;
}

} // namespace workflow
