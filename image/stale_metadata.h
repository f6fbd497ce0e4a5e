#pragma once

#include <string>

#include <OpenImageIO/imageio.h>

#include "diagnostics/diagnostic.h"

namespace image {

/// Sets "oiio:ColorSpace" to `color_space_tag` and removes outdated attributes: those computed from the
/// pixels, such as digests, averages and the thumbnail, and, unless `keeps_space`, those that describe the
/// color space, such as the ICC profile and the chromaticities, with a note. Does nothing if the tag is
/// empty.
void remove_stale_color_metadata(OIIO::ImageSpec& spec, const std::string& color_space_tag, bool keeps_space,
                                 diagnostics::Diagnostics& notes);

/// Removes attributes that only apply to a file of the same format or pixel type, or that a file of `format`,
/// which is to be written, cannot have.
void remove_foreign_metadata(OIIO::ImageSpec& spec, const std::string& format, bool same_format,
                             bool same_depth);

} // namespace image
