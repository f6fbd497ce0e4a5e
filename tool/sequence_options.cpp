#include "tool/sequence_options.h"

namespace tool {

void add_sequence_options(Options& options, SequenceChoice& choice) {
    options.add("--frames", choice.frames,
                "frame range of a sequence: 1-100, 1-99x2, or a comma-separated list (default: the frames "
                "that exist)",
                "FRAMES");
    options.add_flag("--resume", choice.resumes,
                     "skip images whose output is complete, not older than the input, and made by the same "
                     "conversion");
    options.add_flag("--dry-run", choice.only_plans, "show what would be converted, and write nothing");
    options.add("--memory", choice.memory,
                "memory to use at most, which limits the images in flight: 500M, 1.5G (default: half of the "
                "machine's)",
                "SIZE");
    const Option quiet = options.add_flag("-q,--quiet", choice.is_quiet, "show errors and warnings only");
    options.add_flag("--json", choice.as_json, "print JSON: a line for each image, and a summary")
        .excludes(quiet);
}

} // namespace tool
