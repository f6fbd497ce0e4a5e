#pragma once

#include "tool/json.h"

namespace tool {

class Console;

/// The published color spaces, and on request the inactive ones.
void print_spaces(Console& console, bool with_inactive);
/// Adds "spaces" and "inactive_spaces".
void add_spaces_to_json(Json& answer);

} // namespace tool
