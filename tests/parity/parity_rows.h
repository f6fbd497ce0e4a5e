#pragma once

#include <iosfwd>

#include "tests/support/recording_log.h"

/// Writes what the module makes of a fixed grid of colors under the active configuration, a line per
/// conversion: each published color space to scene-linear and from it, and scene-linear to each view. A line
/// is a list of fields with tabs between:
///   space | view, name, "to scene-linear" | "from scene-linear", "pixel" | "image", then the numbers of
///     every color, four each. "pixel" is converted one by one, "image" as part of a large image.
///   space | view, name, direction, "refused", and why
/// The spaces and views are preceded by a line of the colors themselves: "grid", then their numbers.
void write_parity_rows(std::ostream& out, RecordingLog& log);

/// The messages in `log` as one field, the most severe level only; forgets them.
std::string take_reason(RecordingLog& log);
