#pragma once

#include <memory>

#include "pixel/aces2.h"

/// Tables of the ACES 2.0 functions. All of these functions throw std::invalid_argument for primaries without
/// an inverse, and for a peak luminance that is not between 1 and 10000 nit.
namespace pixel {

/// Those for RGB to JMh and back.
std::shared_ptr<const Aces2> make_aces2_appearance(const Chromaticities& primaries);
/// Those for tone scale and chroma compression.
std::shared_ptr<const Aces2> share_aces2_tone(double peak);
/// Those for gamut compression and the whole output transform. Tables for the same limits are shared as long
/// as they are in use.
std::shared_ptr<const Aces2> share_aces2_gamut(double peak, const Chromaticities& limit);

} // namespace pixel
