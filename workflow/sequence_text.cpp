#include "workflow/sequence_text.h"

#include <fmt/format.h>

namespace workflow {

namespace {

constexpr double PIXELS_PER_MEGAPIXEL = 1e6;

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
