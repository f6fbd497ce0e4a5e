#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tool/exit_code.h"
#include "tool/progress_bar.h"
#include "tool/sequence_options.h"
#include "workflow/frame_jobs.h"
#include "workflow/sequence.h"

namespace tool {

class Console;

/// Shows the results of one run of `convert`: progress, a summary and the failures; with --json a line for
/// each image.
class SequenceOutput {
public:
    /// `what` names the conversion: "sRGB to linear". The references must outlive the object.
    SequenceOutput(const SequenceChoice& choice, const workflow::FrameJobs& found, const std::string& input,
                   const std::string& output, const std::string& what, Console& console);

    /// Callbacks of the run; valid as long as the object.
    workflow::SequenceEvents get_events();
    ExitCode finish(const workflow::SequenceReport& report);

private:
    void add(const workflow::ImageOutcome& outcome);
    void print_summary(const workflow::SequenceReport& report) const;
    void print_plan() const;
    void print_json_summary(const workflow::SequenceReport& report) const;
    void report_failures(const workflow::SequenceReport& report) const;

    const SequenceChoice& choice;
    const workflow::FrameJobs& found;
    const std::string& input;
    const std::string& output;
    const std::string what;
    Console& console;
    std::optional<ProgressBar> progress;
    workflow::ImageReport last_image;
    std::map<std::string, std::vector<int>> planned; ///< Frames by what happens to them.
};

} // namespace tool
