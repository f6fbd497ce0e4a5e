#pragma once

#include <string>
#include <utility>
#include <vector>

#include "colorio/ocio/types.h"

namespace ocio {

/// Names and values of context variables.
using ContextVariables = std::vector<std::pair<std::string, std::string>>;

/// What context variables are worth in every config that is loaded from now on, before the environment and
/// the defaults of the config.
void set_context_overrides(ContextVariables variables);

/// The config with those values; the config itself when there are none.
ConstConfigRcPtr with_context_overrides(const ConstConfigRcPtr& config);

/// Whether a search path, a transform or the value of another variable names the context variable.
bool uses_context_variable(const ConstConfigRcPtr& config, const std::string& name);

} // namespace ocio
