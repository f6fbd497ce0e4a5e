#pragma once

#include "tool/json.h"

namespace tool {

class Console;

/// Prints the named transforms of the active config; inactive ones only with `with_inactive`.
void print_named_transforms(Console& console, bool with_inactive);
bool has_named_transforms();
/// Adds "named_transforms", inactive ones included.
void add_named_transforms_to_json(Json& answer);

} // namespace tool
