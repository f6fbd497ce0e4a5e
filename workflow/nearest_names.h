#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace workflow {

/// Number of edits (insertions, deletions, replacements, swaps of neighboring characters) that turn `a` into
/// `b`, ignoring ASCII case.
unsigned int get_edit_distance(std::string_view a, std::string_view b);

/// Up to three candidates nearest to `name`, best first. A candidate qualifies if at most a third of the
/// characters differ or it contains `name` (of two or more characters), and if it needs at most one edit more
/// than the best.
std::vector<std::string> find_nearest_names(std::string_view name,
                                            const std::vector<std::string>& candidates);

/// Hint for an unknown name: "did you mean 'x' or 'y'?"; empty when no candidate is near.
std::string did_you_mean(std::string_view name, const std::vector<std::string>& candidates);

} // namespace workflow
