#include "tool/conversion_options.h"

#include <fmt/format.h>

#include "tool/exit_code.h"

namespace tool {

void add_conversion_options(Options& options, workflow::ConversionRequest& request,
                            const std::string& from_help) {
    options.add("--from", request.from, from_help);
    options.add("--to", request.to, "color space of the result");
    add_view_options(options, request);
}

void add_view_options(Options& options, workflow::ConversionRequest& request) {
    options.add("--display", request.display, "display of the view; needs --view");
    options.add("--view", request.view, "view to convert to: VIEW of --display, or DISPLAY.VIEW");
}

void add_cdl_options(Options& options, workflow::ConversionRequest& request) {
    const Option cdl =
        options.add("--cdl", request.cdl,
                    "color correction to apply in scene-linear: FILE or FILE:ID of a .cc, .ccc or "
                    ".cdl file");
    options.add_flag("--inverse-cdl", request.undoes_cdl, "apply the inverse of --cdl").needs(cdl);
}

void check_conversion_request(const workflow::ConversionRequest& request, const std::string& target) {
    if (request.to.empty() && request.view.empty())
        throw UsageError(request.display.empty()
                             ? fmt::format("no destination: {} or --view is required", target)
                             : "--display needs --view");
    if (!request.to.empty() && !(request.view.empty() && request.display.empty()))
        throw UsageError(fmt::format("{} and --view cannot be combined", target));
}

} // namespace tool
