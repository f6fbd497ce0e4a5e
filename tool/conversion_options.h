#pragma once

#include <string>

#include "tool/options.h"

#include "workflow/conversion.h"

namespace tool {

/// Adds --from, --to, --display and --view.
void add_conversion_options(Options& options, workflow::ConversionRequest& request,
                            const std::string& from_help);

/// Adds --display and --view alone.
void add_view_options(Options& options, workflow::ConversionRequest& request);

/// Adds --cdl and --inverse-cdl.
void add_cdl_options(Options& options, workflow::ConversionRequest& request);

/// Throws UsageError unless the request names exactly one destination. `target` names the argument of the
/// destination color space in the message.
void check_conversion_request(const workflow::ConversionRequest& request, const std::string& target = "--to");

} // namespace tool
