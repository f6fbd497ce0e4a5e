#include <fmt/format.h>

#include "workflow/layer_choice.h"

namespace workflow {

namespace {

/// `converted` and `left` are the verbs.
std::string describe(const LayerReport& report, const std::string& converted, const std::string& left) {
    if (report.left.empty() && report.converted.size() < 2 && !report.is_part_of_input)
        return "";
    std::string text;
    for (const std::string& name : report.converted) {
        const auto space = report.other_spaces.find(name);
        text += (text.empty() ? converted + " " : ", ") + name;
        if (space != report.other_spaces.end())
            text += fmt::format(" (from {})", space->second);
    }
    if (!report.left.empty())
        text += fmt::format("{}{} {}", text.empty() ? "" : "; ", left, describe(report.left));
    return text;
}

} // namespace

std::string describe(const std::vector<LeftLayer>& left) {
    std::string text;
    for (std::size_t i = 0; i < left.size(); ++i) {
        const bool is_last = i + 1 == left.size() || left[i + 1].reason != left[i].reason;
        text += left[i].name;
        if (is_last)
            text += fmt::format(" ({})", left[i].reason);
        if (i + 1 < left.size())
            text += is_last ? "; " : ", ";
    }
    return text;
}

std::string describe(const LayerReport& report) {
    return describe(report, "converted", "left");
}

std::string describe_plan(const LayerReport& report) {
    return describe(report, "convert", "leave");
}

} // namespace workflow
