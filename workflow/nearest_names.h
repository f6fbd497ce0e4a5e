#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace workflow {

/// Edits (insertions, deletions, replacements, swaps of neighbors) that turn `a` into `b`, ASCII case
/// ignored.
unsigned int get_edit_distance(std::string_view a, std::string_view b);

/// The candidates that `name` was most likely meant to be, best first, three at most. A candidate qualifies
/// when a third of its letters at most are wrong, or when it contains `name` (two letters or more), and it is
/// at most one edit further than the best.
std::vector<std::string> find_nearest_names(std::string_view name,
                                            const std::vector<std::string>& candidates);

/// "did you mean 'x' or 'y'?", or empty when no candidate is near.
std::string did_you_mean(std::string_view name, const std::vector<std::string>& candidates);

} // namespace workflow
