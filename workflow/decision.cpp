#include "workflow/decision.h"

#include <fmt/format.h>

#include "workflow/name_resolution.h"
#include "workflow/session.h"

namespace workflow {

namespace {

/// How a name given by the user was resolved.
std::string explain_name(const char* word, const std::string& given, const std::string& config_name) {
    const NameKind kind = resolve_color_space(given, config_name).kind;
    return kind == NameKind::LABEL ? fmt::format("from {}", word)
                                   : fmt::format("from {} '{}', {}", word, given, describe_kind(kind));
}

std::string explain_view(const PublishedView& view) {
    std::string text = fmt::format("view '{}' of display '{}'", view.view, view.display);
    const std::string& shown = view.color_space.empty() ? view.named_transform : view.color_space;
    if (!shown.empty())
        text += fmt::format(", which shows {}", shown);
    if (!view.view_transform.empty())
        text += fmt::format(" through the view transform {}", view.view_transform);
    if (!view.looks.empty())
        text += fmt::format(" with the looks {}", view.looks);
    return text;
}

std::string explain_step(const ColorStep& step, const std::string& working_space) {
    return (step.is_inverse ? "inverse of " : "") + step.name +
           (step.is_scene_linear() ? fmt::format(", in {}, the scene-linear color space", working_space)
                                   : "");
}

} // namespace

std::vector<DecisionLine> explain_decision(const Session& session, const ConversionRequest& request,
                                           const Conversion& conversion, const FileSpace& file_space,
                                           const RequestWords& words) {
    const std::string config_name = session.get_config_name();
    std::string reason = file_space.reason;
    if (!request.inverse_view.empty())
        reason = fmt::format("inverted to scene-linear, from {}", words.inverse_view);
    else if (reason.empty())
        reason = explain_name(words.from, request.from, config_name);
    std::vector<DecisionLine> lines = {{"source", fmt::format("{}, {}", conversion.get_source(), reason)}};
    for (const ColorStep& step : request.steps)
        lines.push_back({get_kind_name(step.kind), explain_step(step, conversion.get_working_space())});
    if (!request.to.empty() || !request.view.empty())
        lines.push_back(
            {"destination",
             fmt::format("{}, {}", conversion.get_destination(),
                         request.view.empty()
                             ? explain_name(words.to, request.to, config_name)
                             : explain_view(resolve_view(request.display, request.view, config_name)))});
    lines.push_back({"written as", conversion.get_destination_tag()});
    return lines;
}

} // namespace workflow
