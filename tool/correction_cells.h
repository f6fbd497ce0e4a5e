#pragma once

#include <string>
#include <vector>

#include "tool/json.h"
#include "workflow/correction.h"

namespace tool {

class Console;

/// Warns of elements in the correction that are ignored.
void report_unread_elements(const workflow::Correction& correction, Console& console);

/// Titles of the columns for the id and the numbers, and the cells of one color correction below them.
extern const std::vector<std::string> CORRECTION_TITLES;
std::vector<std::string> make_cells(const workflow::Correction& correction);
/// {"slope": [...], "offset": [...], "power": [...], "saturation": ...}.
Json numbers_to_json(const workflow::Correction& correction);

/// The CDLs that the module publishes.
void print_cdls(Console& console);
Json cdls_to_json();

} // namespace tool
