#pragma once

#include <string>
#include <vector>

#include "workflow/conversion.h"

namespace workflow {

/// The conversion with these values of context variables besides those of
/// the session, which keeps its own. The
/// config is loaded for it and again afterwards; without `context` it is not. Throws like the constructor and
/// Session::use_context.
Conversion make_conversion(Session& session, const ConversionRequest& request,
                           const std::vector<std::string>& context);

} // namespace workflow
