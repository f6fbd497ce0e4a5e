#pragma once

#include <optional>
#include <string>
#include <vector>

#include "colorio/ocio/types.h"
#include "diagnostics/diagnostic.h"

/// Context variables without a value, which OpenColorIO leaves as they are in paths.
namespace ocio {

/// Names of the context variables in `text`, written as $X, ${X} or %X%: each once, in order.
std::vector<std::string> find_variables(const std::string& text);

/// Names of those that stay in `text` when all others are
/// replaced: each once, in order.
std::vector<std::string> find_unset_variables(const ConstConfigRcPtr& config, const std::string& text);

/// The first entry of the search path with such a variable that is not part of the name of a folder that
/// exists; empty if there is none.
std::string find_unset_search_entry(const ConstConfigRcPtr& config);

/// Error about the unset variables of `text`: "the context variable 'SHOT' in the path '$LUTS/a.cube' is not
/// set (LUTS -> SHOT)". `place` is what the text is, "path" or "search path".
diagnostics::Diagnostic describe_unset_variables(const ConstConfigRcPtr& config, const std::string& text,
                                                 const std::string& place);

/// The same for the path of a file transform, as the config spells it.
diagnostics::Diagnostic describe_unset_path(const ConstConfigRcPtr& config, const std::string& source);

/// Error about the first file transform of the config whose file is not found and whose path contains a
/// context variable without a value, or about the search path; empty if there is none.
std::optional<diagnostics::Diagnostic> find_unset_variable(const ConstConfigRcPtr& config);

/// A copy of the config in which every variable of the paths of its files and of its search path has a value.
ConfigRcPtr with_all_variables_set(const ConstConfigRcPtr& config);

} // namespace ocio
