#pragma once

#include <string>

#include "colorio/ocio/types.h"

/// Context variables: those of a config's environment section, or of the process where it has none.
/// OpenColorIO replaces them in names and paths again and again until nothing changes, without a limit.
namespace ocio {

/// True when OpenColorIO would look for variables in `text`.
bool may_hold_variables(const std::string& text);

/// `text` with the context variables in it replaced. Throws when that would not end, or would grow
/// beyond 65,536 characters; the message names the variables that refer to each other.
std::string resolve_variables(const ConstConfigRcPtr& config, const std::string& text);

/// Throws, as `resolve_variables` does, for the variables of the environment section and for every text of
/// the config that OpenColorIO may resolve. Variables of the process that no text refers to are not checked.
/// The config was read from the file at `path`; it is not searched when that refers to no variable.
void require_bounded_variables(const ConstConfigRcPtr& config, const std::string& path);

} // namespace ocio
