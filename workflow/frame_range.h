#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace workflow {

/// Longest sequence that is accepted: more frames than that are a slip of the finger.
inline constexpr unsigned int MAX_FRAMES = 1000000;

/// The frame numbers that `text` lists: numbers and ranges separated by commas, a range is "first-last" or
/// "first-lastxstep" ("1-100x2"), and runs backwards when `last` is smaller. Order as written, each frame
/// once. Throws diagnostics::Failure with the offending piece.
std::vector<int> parse_frames(std::string_view text);

} // namespace workflow
