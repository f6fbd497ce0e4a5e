#include "tool/conversion_options.h"

#include <fmt/format.h>

#include "tool/exit_code.h"

namespace tool {

void add_conversion_options(Options& options, workflow::ConversionRequest& request,
                            const std::string& from_help) {
    options.add("--from", request.from, from_help);
    options.add("--to", request.to, "Color space of the result");
    add_view_options(options, request);
}

void add_view_options(Options& options, workflow::ConversionRequest& request) {
    options.add("--display", request.display, "Display that shows the result; needs --view");
    options.add("--view", request.view, "View of that display, or both as DISPLAY.VIEW");
}

void add_grade_options(Options& options, workflow::ConversionRequest& request) {
    const Option cdl =
        options.add("--cdl", request.cdl,
                    "Correction to apply in scene-linear on the way: FILE or FILE:ID of a .cc, "
                    ".ccc or .cdl file");
    options.add_flag("--inverse-cdl", request.undoes_cdl, "Undo that correction instead").needs(cdl);
}

void check_conversion_request(const workflow::ConversionRequest& request, const std::string& target) {
    if (request.to.empty() && request.view.empty())
        throw UsageError(request.display.empty()
                             ? fmt::format("say what to convert to, with {} or --view", target)
                             : "--display needs --view");
    if (!request.to.empty() && !(request.view.empty() && request.display.empty()))
        throw UsageError(fmt::format("{} and --view exclude each other", target));
}

} // namespace tool
