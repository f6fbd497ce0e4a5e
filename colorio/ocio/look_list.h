#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ocio {

/// One look of a list, applied forward or inverse.
struct LookStep {
    std::string name;
    bool inverse;
};

/// The looks of a list such as "+grade, -trim | grade |", in order: '|' separates alternatives, ',' or ':'
/// steps, a leading '-' means the inverse. The alternatives are returned one after the other.
std::vector<LookStep> all_look_steps(std::string_view list);

/// The same, alternative by alternative; empty alternatives (no look at all) included.
std::vector<std::vector<LookStep>> look_alternatives(std::string_view list);

} // namespace ocio
