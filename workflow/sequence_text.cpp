#include "workflow/sequence_text.h"

#include <cstddef>
#include <map>
#include <tuple>
#include <vector>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "workflow/frame_range.h"

namespace workflow {

namespace {

constexpr double PIXELS_PER_MEGAPIXEL = 1e6;
constexpr std::size_t MAX_FAILURES_OF_A_KIND = 10;
constexpr std::ptrdiff_t SHOWN_FAILURES_OF_A_KIND = 3;

using FailureKind = std::tuple<diagnostics::Code, std::string, std::string>;

FailureKind get_failure_kind(const diagnostics::Diagnostic& failure) {
    return {failure.code, failure.subject, failure.hint};
}

/// The speed, and after that the layers that were converted, unless the input has only one.
std::string describe_work(const SequenceReport& report) {
    const double megapixels = static_cast<double>(report.pixels) / PIXELS_PER_MEGAPIXEL;
    const std::string speed =
        fmt::format("{:.2f} Mpixel in {:.3f} s, {:.1f} Mpixel/s", megapixels, report.seconds,
                    report.seconds > 0.0 ? megapixels / report.seconds : 0.0);
    const std::string layers = describe(report.layers);
    return layers.empty() ? speed : speed + "; " + layers;
}

} // namespace

const char* get_name(ImageOutcome::Status status) {
    switch (status) {
    case ImageOutcome::CONVERTED:
        return "converted";
    case ImageOutcome::UP_TO_DATE:
        return "up-to-date";
    case ImageOutcome::PLANNED:
        return "planned";
    case ImageOutcome::FAILED:
        break;
    }
    return "failed";
}

std::string describe_plan(const ImageOutcome& outcome) {
    if (outcome.status == ImageOutcome::UP_TO_DATE)
        return "up to date";
    const std::string layers = describe_plan(outcome.image.layers);
    return fmt::format("would convert{}{}",
                       outcome.reason.empty() ? "" : fmt::format(" ({})", outcome.reason),
                       layers.empty() ? "" : ": " + layers);
}

std::string summarize_image(const SequenceReport& report, const ImageReport& image) {
    if (report.up_to_date > 0)
        return "up to date";
    if (report.converted == 0)
        return "";
    return fmt::format("{} x {} {}, {}", image.width, image.height, image.depth, describe_work(report));
}

diagnostics::Diagnostics shorten_failures(const SequenceReport& report) {
    std::map<FailureKind, std::vector<std::size_t>> kinds;
    for (std::size_t i = 0; i < report.failures.size(); ++i)
        kinds[get_failure_kind(report.failures[i])].push_back(i);
    diagnostics::Diagnostics shown;
    for (std::size_t i = 0; i < report.failures.size(); ++i) {
        const diagnostics::Diagnostic& failure = report.failures[i];
        const std::vector<std::size_t>& same = kinds[get_failure_kind(failure)];
        if (same.size() <= MAX_FAILURES_OF_A_KIND || i <= same[SHOWN_FAILURES_OF_A_KIND - 1])
            shown.push_back(failure);
        if (same.size() <= MAX_FAILURES_OF_A_KIND || i != same[SHOWN_FAILURES_OF_A_KIND - 1])
            continue;
        std::vector<int> frames;
        for (auto other = same.begin() + SHOWN_FAILURES_OF_A_KIND; other != same.end(); ++other)
            frames.push_back(report.failed_frames[*other]);
        shown.push_back(diagnostics::make_error(
            failure.code,
            fmt::format("{} more frames failed like this one: {}", frames.size(), format_frames(frames)),
            failure.subject));
    }
    return shown;
}

std::string summarize_sequence(const SequenceReport& report, const FrameJobs& found) {
    std::string text =
        fmt::format("{} {} converted", report.converted, report.converted == 1 ? "frame" : "frames");
    if (report.up_to_date > 0)
        text += fmt::format(", {} up to date", report.up_to_date);
    if (report.failed > 0)
        text += fmt::format(", {} failed", report.failed);
    if (!found.missing.empty())
        text += fmt::format(", {} missing", found.missing.size());
    return fmt::format("{}, {}", text, describe_work(report));
}

} // namespace workflow
