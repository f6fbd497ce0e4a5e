#pragma once

#include <vector>

#include "pixel/aces2_model.h"

/// Corners of RGB cubes by their hues, and the hues at which the boundary of a gamut is sampled.
namespace pixel {

/// Red, yellow, green, cyan, blue and magenta in the order of their hues, between a copy of the last, a turn
/// earlier, and one of the first, a turn later.
struct CubeCorners {
    std::array<Color3, 8> rgb, jmh;
};

constexpr std::size_t CORNERS = 6;

/// Corners of the RGB cube from 0 to `peak`.
CubeCorners find_corners(const AppearanceModel& model, const AppearanceMatrices& matrices, float peak);

/// Hues of the corners whose J is `max_j`, below `limit`.
std::array<float, CORNERS> find_reach_hues(const AppearanceModel& model, const AppearanceMatrices& matrices,
                                           float max_j, float limit);

/// The hues of a table: about one for each degree, and each of the given ones exactly.
std::vector<float> sample_hues(const CubeCorners& corners, const std::array<float, CORNERS>& reach_hues);

} // namespace pixel
