#pragma once

#include "tool/json.h"

namespace tool {

class Console;

/// The named transforms of the configuration; inactive ones on request.
void print_named_transforms(Console& console, bool with_inactive);
bool has_named_transforms();
/// Adds "named_transforms", inactive ones included.
void add_named_transforms_to_json(Json& answer);

} // namespace tool
