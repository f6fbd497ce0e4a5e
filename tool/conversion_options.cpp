#include "tool/conversion_options.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <fmt/format.h>

#include "tool/exit_code.h"

namespace tool {

namespace {

constexpr char INVERSE[] = "--inverse";

/// An option that adds a step.
struct StepOption {
    const char* name;
    const char* value;
    workflow::ColorStep::Kind kind;
    const char* help;
};

constexpr StepOption STEP_OPTIONS[] = {
    {"--cdl", "CDL", workflow::ColorStep::CDL,
     "CDL to apply in scene-linear: FILE or FILE:ID of a .cc, .ccc or .cdl file, or the name of a listed "
     "one; CDLs and looks are applied in the order given"},
    {"--look", "LOOKS", workflow::ColorStep::LOOKS,
     "looks of the config to apply after conversion to scene-linear: \"NAME, -OTHER\"; - applies the "
     "inverse"},
    {"--named-transform", "NAME", workflow::ColorStep::NAMED_TRANSFORM,
     "named transform to apply to the result, or to the source without a destination; named transforms and "
     "LUTs are "
     "applied in the order given, after all CDLs and looks"},
    {"--lut", "FILE", workflow::ColorStep::LUT,
     "LUT or transform file to apply to the result, or to the source without a destination"},
};

} // namespace

void add_conversion_options(Options& options, ConversionChoice& choice, const std::string& from_help) {
    options.add("--from", choice.from, from_help);
    options.add("--to", choice.to, "color space of the result");
    add_view_options(options, choice);
}

void add_view_options(Options& options, ConversionChoice& choice) {
    options.add("--display", choice.display, "display of the view; needs --view");
    options.add("--view", choice.view, "view to convert to: VIEW of --display, or DISPLAY.VIEW");
}

void add_inverse_view_option(Options& options, ConversionChoice& choice) {
    options.add("--inverse-view", choice.inverse_view,
                "view that the source was made for; it is inverted to scene-linear", "DISPLAY.VIEW");
}

void add_step_options(Options& options, ConversionChoice& choice) {
    std::vector<OrderedOption> declared;
    for (const StepOption& step : STEP_OPTIONS)
        declared.push_back({step.name, step.value, std::string(step.help) + "; can be repeated"});
    declared.push_back({INVERSE, "", "invert the preceding --cdl, --look, --named-transform or --lut"});
    options.add_ordered(declared, choice.step_values);
    options.add_flag("--inverse-cdl", choice.undoes_cdls, "apply the inverse of every --cdl")
        .needs(options.get("--cdl"));
}

void take_steps(ConversionChoice& choice) {
    choice.steps.clear();
    for (const OrderedValue& given : choice.step_values) {
        if (given.option == INVERSE) {
            if (choice.steps.empty())
                throw UsageError("--inverse needs a preceding --cdl, --look, --named-transform or --lut");
            choice.steps.back().is_inverse = true;
            continue;
        }
        for (const StepOption& known : STEP_OPTIONS)
            if (given.option == known.name)
                choice.steps.push_back({known.kind, given.value});
        if (choice.steps.back().kind == workflow::ColorStep::CDL && choice.undoes_cdls)
            choice.steps.back().is_inverse = true;
    }
}

void check_conversion(ConversionChoice& choice, const std::string& target) {
    take_steps(choice);
    const bool goes_somewhere =
        !choice.inverse_view.empty() ||
        std::any_of(choice.steps.begin(), choice.steps.end(),
                    [](const workflow::ColorStep& step) { return !step.is_scene_linear(); });
    if (!choice.display.empty() && choice.view.empty() && choice.to.empty())
        throw UsageError("--display needs --view");
    if (choice.to.empty() && choice.view.empty() && !goes_somewhere)
        throw UsageError(fmt::format("no destination: {} or --view is required", target));
    for (const auto& [option, value] :
         {std::pair("--view", choice.view), std::pair("--display", choice.display)})
        if (!choice.to.empty() && !value.empty())
            throw UsageError(fmt::format("{} and {} cannot be combined", target, option));
    if (!choice.from.empty() && !choice.inverse_view.empty())
        throw UsageError("--from and --inverse-view cannot be combined");
}

} // namespace tool
