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

/// Frames in ascending order as the shortest such list: "1-4,7,9-21x2".
std::string format_frames(const std::vector<int>& frames);

/// The frames that are missing between the first and the last of `frames`, which ascend: those at the
/// regular step of the frames, so that only 5 is missing from 1, 3, 7. Empty when there are more
/// than MAX_FRAMES of them.
std::vector<int> find_gaps(const std::vector<int>& frames);

} // namespace workflow
