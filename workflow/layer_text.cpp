#include <algorithm>
#include <utility>

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
    std::vector<std::pair<std::string, std::string>> names; // by their reasons, in the order of these
    for (const LeftLayer& layer : left) {
        const auto known = std::find_if(names.begin(), names.end(),
                                        [&](const auto& entry) { return entry.first == layer.reason; });
        if (known == names.end())
            names.emplace_back(layer.reason, layer.name);
        else
            known->second += ", " + layer.name;
    }
    std::string text;
    for (const auto& [reason, list] : names)
        text += fmt::format("{}{} ({})", text.empty() ? "" : "; ", list, reason);
    return text;
}

std::string describe(const LayerReport& report) {
    return describe(report, "converted", "left");
}

std::string describe_plan(const LayerReport& report) {
    return describe(report, "convert", "leave");
}

} // namespace workflow
