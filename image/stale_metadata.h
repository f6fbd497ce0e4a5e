#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace image {

/// Names the new color space in the metadata and removes what is no longer true: what was computed from the
/// pixels, such as digests, averages and the thumbnail, and unless `keeps_space` what told how to read the
/// colors, such as the profile and the chromaticities. `notes` says what the user may miss.
void remove_stale_color_metadata(OIIO::ImageSpec& spec, const std::string& color_space_tag, bool keeps_space,
                                 std::vector<std::string>& notes);

/// Removes what only means something to a file of the same format, or of the same depth.
void remove_foreign_metadata(OIIO::ImageSpec& spec, bool same_format, bool same_depth);

} // namespace image
