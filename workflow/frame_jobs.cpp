#include "workflow/frame_jobs.h"

#include <filesystem>
#include <unordered_map>

#include <fmt/format.h>

#include "diagnostics/file_failure.h"
#include "workflow/frame_pattern.h"
#include "workflow/frame_range.h"

namespace workflow {

namespace {

using diagnostics::Code;

constexpr char PATTERNS[] = "patterns are %04d, ####, @@@@ and $F4";

bool exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

void require_pattern(const FramePattern& pattern, const std::string& path) {
    if (!pattern.is_pattern())
        diagnostics::fail(Code::USAGE, fmt::format("no frame number in '{}': a sequence needs one", path),
                          PATTERNS);
}

/// A frame whose output takes the place of a later frame's input would be converted twice.
void require_separate_files(const std::vector<ImageJob>& jobs) {
    std::unordered_map<std::string, int> inputs;
    for (const ImageJob& job : jobs)
        inputs.emplace(job.input, *job.frame);
    for (const ImageJob& job : jobs)
        if (const auto found = inputs.find(job.output); found != inputs.end() && found->second != *job.frame)
            diagnostics::fail(Code::USAGE,
                              fmt::format("'{}' is the output of frame {} and the input of frame {}",
                                          job.output, *job.frame, found->second),
                              "name another output");
}

/// Sorts the frames into those that exist and those that are missing.
void add_frames(const std::vector<int>& frames, const FramePattern& input, const FramePattern& output,
                FrameJobs& found) {
    for (const int frame : frames) {
        ImageJob job{input.get_path(frame), output.get_path(frame), frame};
        (exists(job.input) ? found.jobs : found.missing).push_back(std::move(job));
    }
}

} // namespace

FrameJobs find_frame_jobs(const std::string& input, const std::string& output, std::string_view frames) {
    const FramePattern input_pattern(input);
    const FramePattern output_pattern(output);
    FrameJobs found;
    found.is_range_given = !frames.empty();
    found.is_sequence = found.is_range_given || (input_pattern.is_pattern() && !exists(input));
    if (!found.is_sequence) {
        if (output_pattern.is_pattern())
            diagnostics::fail(
                Code::USAGE,
                fmt::format("'{}' is the pattern of a sequence, and '{}' is a single image", output, input),
                "name one file, or a pattern for both");
        found.jobs.push_back({input, output, std::nullopt});
        return found;
    }
    require_pattern(input_pattern, input);
    require_pattern(output_pattern, output);
    if (found.is_range_given) {
        add_frames(parse_frames(frames), input_pattern, output_pattern, found);
    } else {
        const std::vector<int> existing = input_pattern.find_existing_frames();
        if (existing.empty())
            diagnostics::fail_to_read(Code::FRAMES_MISSING, input, "no such frames");
        add_frames(existing, input_pattern, output_pattern, found);
        add_frames(find_gaps(existing), input_pattern, output_pattern, found);
    }
    require_separate_files(found.jobs);
    return found;
}

std::optional<diagnostics::Diagnostic> describe_missing(const FrameJobs& found, const std::string& input) {
    if (found.missing.empty())
        return std::nullopt;
    std::vector<int> frames;
    for (const ImageJob& job : found.missing)
        frames.push_back(*job.frame);
    diagnostics::Diagnostic missing = make_file_error(
        Code::FRAMES_MISSING, fmt::format("missing frames of '{}': {}", input, format_frames(frames)), input);
    if (!found.is_range_given)
        missing.severity = diagnostics::Severity::WARNING;
    return missing;
}

} // namespace workflow
