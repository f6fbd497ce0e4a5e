#pragma once

#include "tool/json.h"
#include "workflow/published_cdls.h"

namespace tool {

class Console;

void print_cdls(Console& console);
Json cdls_to_json();

} // namespace tool
