#pragma once

#include <nlohmann/json.hpp>

namespace tool {

class Console;

/// The published colour spaces, and on request the inactive ones.
void print_spaces(Console& console, bool with_inactive);
/// Adds "spaces" and "inactive_spaces".
void add_spaces_to_json(nlohmann::ordered_json& answer);

} // namespace tool
