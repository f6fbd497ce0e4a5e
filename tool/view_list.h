#pragma once

#include "tool/json.h"

namespace tool {

class Console;

/// The published views, and on request those that lists of active displays and views hide.
void print_views(Console& console, bool with_inactive);
/// Adds "views" and "inactive_views".
void add_views_to_json(Json& answer);

} // namespace tool
