#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace workflow {

/// Longest sequence that is accepted; longer ones are typing errors.
inline constexpr unsigned int MAX_FRAMES = 1000000;

/// Parses a frame range: comma-separated numbers and ranges "first-last" or "first-lastxstep" ("1-100x2"),
/// which run backwards when `last` is smaller. Returns the frames in the order as written, each once. Throws
/// diagnostics::Failure that shows the invalid part.
std::vector<int> parse_frames(std::string_view text);

} // namespace workflow
