#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "exact_tables.h"

namespace pixel_test {

namespace {

using Triple = std::array<double, 3>;
using Index = std::array<std::size_t, 3>;

/// A node of the table, or of the layer around it, which is stretched by 4 about 0.5.
Triple node(const pixel::Lut3D& cube, const Index& at) {
    const auto inner = [&](std::size_t i) { return std::clamp<std::size_t>(i, 1, cube.edge) - 1; };
    const auto outside = [&](std::size_t i) { return i == 0 || i > cube.edge; };
    const bool red_fastest = cube.order == pixel::CubeOrder::RedFastest;
    const std::size_t slow = inner(at[red_fastest ? 2 : 0]), fast = inner(at[red_fastest ? 0 : 2]);
    const float* entry = cube.rgb->data() + 3 * ((slow * cube.edge + inner(at[1])) * cube.edge + fast);
    Triple out{};
    for (std::size_t c = 0; c < 3; ++c) {
        const auto v = static_cast<double>(entry[c]);
        out[c] = outside(at[0]) || outside(at[1]) || outside(at[2]) ? 4 * (v - 0.5) + 0.5 : v;
    }
    return out;
}

double determinant(const Triple& a, const Triple& b, const Triple& c) {
    return a[0] * (b[1] * c[2] - b[2] * c[1]) - a[1] * (b[0] * c[2] - b[2] * c[0]) +
           a[2] * (b[0] * c[1] - b[1] * c[0]);
}

Triple difference(const Triple& a, const Triple& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

constexpr Index PATHS[] = {{0, 1, 2}, {1, 0, 2}, {1, 2, 0}, {2, 1, 0}, {2, 0, 1}, {0, 2, 1}};

bool solve(const pixel::Lut3D& cube, const Index& cell, const Triple& value, Triple& position) {
    const Triple base = node(cube, cell), target = difference(value, base);
    for (const Index& path : PATHS) {
        Index corner = cell;
        std::array<Triple, 3> edge{};
        for (std::size_t k = 0; k < 3; ++k) {
            ++corner[path[k]];
            edge[k] = difference(node(cube, corner), base);
        }
        const double volume = determinant(edge[0], edge[1], edge[2]);
        const double w0 = determinant(target, edge[1], edge[2]) / volume;
        const double w1 = determinant(edge[0], target, edge[2]) / volume;
        const double w2 = determinant(edge[0], edge[1], target) / volume;
        if (volume != 0 && std::min({w0, w1, w2}) >= -1e-9 && w0 + w1 + w2 <= 1 + 1e-9) {
            position[path[0]] = static_cast<double>(cell[path[0]]) + w0 + w1 + w2;
            position[path[1]] = static_cast<double>(cell[path[1]]) + w1 + w2;
            position[path[2]] = static_cast<double>(cell[path[2]]) + w2;
            return true;
        }
    }
    return false;
}

/// Octants of the cells from `from` on, blue's half first.
bool search(const pixel::Lut3D& cube, const Index& from, std::size_t width, const Triple& value,
            Triple& position) {
    const std::size_t end = cube.edge + 1;
    if (from[0] >= end || from[1] >= end || from[2] >= end) {
        return false;
    }
    if (width == 1) {
        return solve(cube, from, value, position);
    }
    const std::size_t half = width / 2;
    for (std::size_t octant = 0; octant < 8; ++octant) {
        const Index at{from[0] + (octant & 1) * half, from[1] + (octant >> 1 & 1) * half,
                       from[2] + (octant >> 2) * half};
        if (search(cube, at, half, value, position)) {
            return true;
        }
    }
    return false;
}

} // namespace

ExactPixel evaluate_inverse_cube_exactly(const pixel::Lut3D& cube, const ExactPixel& in) {
    Triple value{}, position{1, 1, 1};
    for (std::size_t c = 0; c < 3; ++c) {
        value[c] = in[c] > 0 ? std::min(in[c], 1.0) : 0; // NaN becomes 0
    }
    std::size_t width = 1;
    while (width < cube.edge + 1) {
        width *= 2;
    }
    search(cube, {0, 0, 0}, width, value, position);
    const auto last = static_cast<double>(cube.edge - 1);
    const auto place = [&](std::size_t c) { return std::clamp(position[c] - 1, 0.0, last) / last; };
    return {place(0), place(1), place(2), in[3]};
}

} // namespace pixel_test
