#pragma once

#include <cstddef>
#include <vector>

namespace pixel_bench {

constexpr std::size_t WIDTH = 3840;
constexpr std::size_t HEIGHT = 2160;
constexpr std::size_t PIXELS = WIDTH * HEIGHT;

using Image = const std::vector<float>& (*)();

/// RGBA, independent values in [0, 1]: neighbors do not share LUT entries in the cache.
const std::vector<float>& noise();
/// RGBA, slow waves with a little grain, as photographs have.
const std::vector<float>& waves();

/// The same images as four planes, one behind the other.
const std::vector<float>& planar_noise();
const std::vector<float>& planar_waves();

} // namespace pixel_bench
