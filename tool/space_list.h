#pragma once

#include "tool/json.h"

namespace tool {

class Console;

/// Prints the published color spaces, and with `with_inactive` also the inactive ones.
void print_spaces(Console& console, bool with_inactive);
/// Adds "spaces" and "inactive_spaces".
void add_spaces_to_json(Json& answer);

} // namespace tool
