#include "tool/conversion_options.h"

#include <fmt/format.h>

#include "tool/exit_code.h"

namespace tool {

void add_conversion_options(CLI::App& options, ConversionRequest& request, const std::string& from_help) {
    options.add_option("--from", request.from, from_help);
    options.add_option("--to", request.to, "Colour space of the result");
    add_view_options(options, request);
}

void add_view_options(CLI::App& options, ConversionRequest& request) {
    options.add_option("--display", request.display, "Display that shows the result; needs --view");
    options.add_option("--view", request.view, "View of that display, or both as DISPLAY.VIEW");
}

void add_grade_options(CLI::App& options, ConversionRequest& request) {
    auto* cdl =
        options.add_option("--cdl", request.cdl,
                           "Correction to apply in scene-linear on the way: FILE or FILE:ID of a .cc, "
                           ".ccc or .cdl file");
    options.add_flag("--inverse-cdl", request.undoes_cdl, "Undo that correction instead")->needs(cdl);
}

void check_conversion_request(const ConversionRequest& request, const std::string& target) {
    if (request.to.empty() && request.view.empty())
        throw UsageError(request.display.empty()
                             ? fmt::format("say what to convert to, with {} or --view", target)
                             : "--display needs --view");
    if (!request.to.empty() && !(request.view.empty() && request.display.empty()))
        throw UsageError(fmt::format("{} and --view exclude each other", target));
}

} // namespace tool
