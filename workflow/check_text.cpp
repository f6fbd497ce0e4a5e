#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "workflow/config_check.h"

namespace workflow {

namespace {

std::string format_failures(std::size_t count) {
    return count == 0 ? "none" : std::to_string(count);
}

/// "5 with a view transform, 2 with looks".
std::string describe_views(const CheckReport& report) {
    std::vector<std::string> counts;
    for (const auto& [count, words] : {std::pair(report.views_with_view_transform, "with a view transform"),
                                       {report.views_with_looks, "with looks"},
                                       {report.views_with_named_transform, "showing a named transform"}})
        if (count > 0)
            counts.push_back(fmt::format("{} {}", count, words));
    return fmt::format("{}", fmt::join(counts, ", "));
}

/// "2 looks, 1 view transform".
std::string describe_other_trials(const CheckReport& report) {
    std::vector<std::string> counts;
    for (const auto& [count, thing] : {std::pair(report.named_transforms_tried, "named transform"),
                                       {report.inactive_spaces_tried, "inactive color space"},
                                       {report.looks_tried, "look"},
                                       {report.view_transforms_tried, "view transform"}})
        if (count > 0)
            counts.push_back(fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s"));
    return fmt::format("{}", fmt::join(counts, ", "));
}

} // namespace

const char* get_name(CheckFailure::Subject subject) {
    switch (subject) {
    case CheckFailure::VIEW:
        return "view";
    case CheckFailure::NAMED_TRANSFORM:
        return "named transform";
    case CheckFailure::INACTIVE_COLOR_SPACE:
        return "inactive color space";
    case CheckFailure::LOOK:
        return "look";
    case CheckFailure::VIEW_TRANSFORM:
        return "view transform";
    case CheckFailure::COLOR_SPACE:
        break;
    }
    return "color space";
}

std::string describe(const CheckFailure& failure) {
    std::string subject = fmt::format("{} '{}'", get_name(failure.subject), failure.name);
    if (!failure.directions.empty())
        subject += fmt::format(", {}", fmt::join(failure.directions, " and "));
    if (!failure.path.empty())
        subject += ", through " + failure.path;
    const std::string hint = failure.reason.hint.empty() ? "" : "; " + failure.reason.hint;
    return fmt::format("{}: {}{}", subject, format_located(failure.reason), hint);
}

const std::vector<CheckCount>& get_check_counts() {
    static const std::vector<CheckCount> COUNTS = {
        {"spaces_tried", &CheckReport::spaces_tried},
        {"views_tried", &CheckReport::views_tried},
        {"views_with_view_transform", &CheckReport::views_with_view_transform},
        {"views_with_looks", &CheckReport::views_with_looks},
        {"views_with_named_transform", &CheckReport::views_with_named_transform},
        {"named_transforms_tried", &CheckReport::named_transforms_tried},
        {"inactive_spaces_tried", &CheckReport::inactive_spaces_tried},
        {"looks_tried", &CheckReport::looks_tried},
        {"view_transforms_tried", &CheckReport::view_transforms_tried},
    };
    return COUNTS;
}

std::vector<std::string> summarize(const CheckReport& report) {
    std::vector<std::string> lines = {fmt::format(
        "Color spaces tried to and from '{}': {}. Views tried: {}. Failures: {}.", report.scene_linear,
        report.spaces_tried, report.views_tried, format_failures(report.failures.size()))};
    if (const std::string views = describe_views(report); !views.empty())
        lines.push_back(fmt::format("Views: {}.", views));
    if (const std::string others = describe_other_trials(report); !others.empty())
        lines.push_back(
            fmt::format("Also tried: {}. Notes: {}.", others, format_failures(report.notes.size())));
    return lines;
}

} // namespace workflow
