#pragma once

#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"

namespace workflow {

// Values of context variables as SessionOptions::context has them: "SHOT=sq010".

/// Sets the values for configs that are loaded from now on. Throws diagnostics::Failure for a text that is
/// not KEY=VALUE; nothing is then set.
void set_context(const std::vector<std::string>& context);

/// A warning for each of these variables that the active config does not use; `config_name` is for messages.
diagnostics::Diagnostics find_unused_variables(const std::vector<std::string>& context,
                                               const std::string& config_name);

/// The values of `context` with those of `others` in place of values of the same variables. Throws like
/// `set_context`.
std::vector<std::string> merge_contexts(const std::vector<std::string>& context,
                                        const std::vector<std::string>& others);

} // namespace workflow
