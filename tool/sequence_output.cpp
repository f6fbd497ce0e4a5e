#include "tool/sequence_output.h"

#include <algorithm>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/option_hints.h"
#include "workflow/frame_range.h"
#include "workflow/sequence_text.h"

namespace tool {

namespace {

using workflow::ImageOutcome;

ProgressBar::Step get_step(ImageOutcome::Status status) {
    return status == ImageOutcome::CONVERTED ? ProgressBar::Step::CONVERTED
           : status == ImageOutcome::FAILED  ? ProgressBar::Step::FAILED
                                             : ProgressBar::Step::SKIPPED;
}

Json make_line(const workflow::ImageJob& job, const char* status) {
    return {{"frame", job.frame ? Json(*job.frame) : Json()},
            {"input", job.input},
            {"output", job.output},
            {"status", status}};
}

Json list_left(const std::vector<workflow::LeftLayer>& left) {
    Json list = Json::array();
    for (const workflow::LeftLayer& layer : left)
        list.push({{"name", layer.name}, {"reason", layer.reason}});
    return list;
}

Json make_line(const ImageOutcome& outcome) {
    Json line = make_line(outcome.job, get_name(outcome.status));
    line.set("reason", outcome.reason);
    Json other_spaces;
    Json notes = Json::array();
    for (const diagnostics::Diagnostic& note : outcome.image.notes)
        notes.push(to_json(note));
    if (outcome.status == ImageOutcome::CONVERTED)
        line.update({{"width", outcome.image.width},
                     {"height", outcome.image.height},
                     {"type", outcome.image.depth},
                     {"pixels", outcome.image.pixels},
                     {"seconds", outcome.seconds},
                     {"notes", notes}});
    if (outcome.status == ImageOutcome::CONVERTED || outcome.status == ImageOutcome::PLANNED)
        line.set("layers", outcome.image.layers.converted).set("left", list_left(outcome.image.layers.left));
    for (const auto& [layer, space] : outcome.image.layers.other_spaces)
        other_spaces.set(layer, space);
    if (!outcome.image.layers.other_spaces.empty())
        line.set("layer_sources", other_spaces);
    if (outcome.error)
        line.set("error", to_json(*outcome.error));
    return line;
}

} // namespace

SequenceOutput::SequenceOutput(const SequenceChoice& choice, const workflow::FrameJobs& found,
                               const std::string& input, const std::string& output, const std::string& what,
                               Console& console)
    : choice(choice), found(found), input(input), output(output), what(what), console(console) {
    if (const auto missing = describe_missing(found, input); missing && !found.is_range_given)
        console.report(*missing);
    if (choice.as_json)
        for (const workflow::ImageJob& job : found.missing)
            console.print_text(make_line(job, "missing").format_line());
}

workflow::SequenceEvents SequenceOutput::get_events() {
    if (found.is_sequence && !choice.only_plans)
        progress.emplace(console, static_cast<unsigned int>(found.jobs.size()));
    workflow::SequenceEvents events;
    events.report = [this](const diagnostics::Diagnostic& note) { console.report(name_source_option(note)); };
    events.finished = [this](const ImageOutcome& outcome) { add(outcome); };
    return events;
}

void SequenceOutput::add(const ImageOutcome& outcome) {
    last_image = outcome.image;
    if (choice.as_json)
        console.print_text(make_line(outcome).format_line());
    else if (choice.only_plans && outcome.status != ImageOutcome::FAILED)
        planned[describe_plan(outcome)].push_back(outcome.job.frame.value_or(0));
    if (progress)
        progress->advance(get_step(outcome.status));
}

ExitCode SequenceOutput::finish(const workflow::SequenceReport& report) {
    progress.reset();
    if (choice.as_json)
        print_json_summary(report);
    else if (!choice.is_quiet)
        print_summary(report);
    report_failures(report);
    const bool lacks_frames = found.is_range_given && !found.missing.empty();
    return report.failed == 0 && !lacks_frames ? EXIT_CODE_DONE : EXIT_CODE_FAILED;
}

void SequenceOutput::print_summary(const workflow::SequenceReport& report) const {
    if (choice.only_plans)
        return print_plan();
    const std::string summary =
        found.is_sequence ? summarize_sequence(report, found) : summarize_image(report, last_image);
    if (!summary.empty())
        console.print(fmt::format("{}: {}, {}", output, what, summary));
}

void SequenceOutput::print_plan() const {
    for (const auto& [plan, numbers] : planned) {
        std::vector<int> frames = numbers;
        std::sort(frames.begin(), frames.end());
        console.print(found.is_sequence
                          ? fmt::format("{}: {}, {}: {}", output, what, plan, workflow::format_frames(frames))
                          : fmt::format("{}: {}, {}", output, what, plan));
    }
}

void SequenceOutput::print_json_summary(const workflow::SequenceReport& report) const {
    console.print_text(Json({{"summary",
                              {{"input", input},
                               {"output", output},
                               {"conversion", what},
                               {"converted", report.converted},
                               {"up-to-date", report.up_to_date},
                               {"planned", report.planned},
                               {"failed", report.failed},
                               {"missing", found.missing.size()},
                               {"pixels", report.pixels},
                               {"seconds", report.seconds}}}})
                           .format_line());
}

void SequenceOutput::report_failures(const workflow::SequenceReport& report) const {
    if (const auto missing = describe_missing(found, input); missing && found.is_range_given)
        console.report(*missing);
    console.report(console.writes_json_diagnostics() ? report.failures : shorten_failures(report));
}

} // namespace tool
