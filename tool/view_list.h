#pragma once

#include "tool/json.h"

namespace tool {

class Console;

/// Prints the published views, and with `with_inactive` also those hidden by active_displays and
/// active_views.
void print_views(Console& console, bool with_inactive);
/// Adds "views" and "inactive_views".
void add_views_to_json(Json& answer);

} // namespace tool
