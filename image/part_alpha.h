#pragma once

#include <vector>

#include <OpenImageIO/imageio.h>

#include "image/pixel_layout.h"

namespace image {

/// True when the pixels of two parts are at the same places of the same view, and none is deep: the alpha of
/// one may then be that of the color of the other.
bool may_share_alpha(const OIIO::ImageSpec& a, const OIIO::ImageSpec& b);

/// The alpha without a layer of all pixels of a part that has one.
std::vector<float> decode_alpha(const OIIO::ImageSpec& spec, const PixelBuffer& pixels);

} // namespace image
