#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace tool {

/// Names the new colour space in the metadata and removes what described the colours as they were: profile,
/// chromaticities, gamma, digests and averages of the pixels, thumbnail. `notes` says what the user may miss.
void remove_stale_color_metadata(OIIO::ImageSpec& spec, const std::string& color_space_tag,
                                 std::vector<std::string>& notes);

/// Removes what only means something to a file of the same format, or of the same depth.
void remove_foreign_metadata(OIIO::ImageSpec& spec, bool same_format, bool same_depth);

} // namespace tool
