#pragma once

#include <vector>

#include "pixel/aces2_hues.h"

/// The boundary of a gamut by hues.
namespace pixel {

/// The cusp of the gamut at a hue, and the reciprocal of the exponent of the boundary above it.
struct GamutCusp {
    float j, m, upper_root;
};

/// The entries for `hues`; the first one and the last two repeat others. M is widened for the rounded cusp.
std::vector<GamutCusp> find_cusps(const AppearanceModel& model, const AppearanceMatrices& matrices,
                                  const CubeCorners& corners, const std::vector<float>& hues);

/// Sets `upper_root` to the largest for which the boundary stays outside RGB from 0 to `peak`.
void fit_upper_roots(const Aces2& aces, float peak, const std::vector<float>& hues,
                     std::vector<GamutCusp>& cusps);

} // namespace pixel
