#pragma once

#include <array>

namespace pixel_test {

/// Red, green, blue, alpha in double precision.
using ExactPixel = std::array<double, 4>;

} // namespace pixel_test
