#include "pixel/aces2_hues.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace pixel {

namespace {

constexpr std::size_t LAST_SAMPLE = 359;

/// Red, yellow, green, cyan, blue, magenta.
constexpr Color3 UNIT_CORNERS[CORNERS] = {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 1, 1}, {0, 0, 1}, {1, 0, 1}};

Color3 scaled(const Color3& color, float factor) {
    return {factor * color[0], factor * color[1], factor * color[2]};
}

/// The corner that is just lighter than `response`, on the line from black.
Color3 reach_corner(const AppearanceMatrices& matrices, const Color3& unit, float response, float limit) {
    float low = 0, high = limit;
    while (high - low > 1e-3f) {
        const float middle = (low + high) / 2.0f;
        const float found = rgb_to_aab(matrices, scaled(unit, middle))[0];
        if (found < response) {
            low = middle;
        } else {
            high = middle;
        }
        if (found == response) {
            break;
        }
    }
    return scaled(unit, high);
}

/// Of the samples 0 to 359, that nearest to each hue, but each hue has a separate one.
std::vector<std::size_t> nearest_samples(const std::vector<float>& hues) {
    std::vector<std::size_t> samples;
    std::size_t least = hues.front() == 0 ? 0 : 1, last = LAST_SAMPLE + 1;
    for (std::size_t k = 0; k < hues.size(); ++k) {
        const auto nearest = static_cast<std::size_t>(std::round(hues[k]));
        std::size_t sample = std::min(std::max(nearest, least), LAST_SAMPLE);
        if (sample == last) {
            if (k > 1 && samples[k - 2] + 1 != samples[k - 1]) {
                --samples[k - 1];
            } else {
                ++sample;
            }
        }
        samples.push_back(std::min(sample, LAST_SAMPLE));
        least = last = sample;
    }
    return samples;
}

void add_interval(std::vector<float>& hues, float from, float to, std::size_t count) {
    const float step = (to - from) / static_cast<float>(count);
    for (std::size_t i = 0; i < count; ++i) {
        hues.push_back(from + static_cast<float>(i) * step);
    }
}

} // namespace

CubeCorners find_corners(const AppearanceModel& model, const AppearanceMatrices& matrices, float peak) {
    std::array<Color3, CORNERS> rgb{}, jmh{};
    std::size_t first = 0;
    for (std::size_t i = 0; i < CORNERS; ++i) {
        rgb[i] = scaled(UNIT_CORNERS[i], peak);
        jmh[i] = rgb_to_jmh(model, matrices, rgb[i]);
        first = jmh[i][2] < jmh[first][2] ? i : first;
    }
    CubeCorners corners{};
    for (std::size_t i = 0; i < 8; ++i) {
        corners.rgb[i] = rgb[(first + i + CORNERS - 1) % CORNERS];
        corners.jmh[i] = jmh[(first + i + CORNERS - 1) % CORNERS];
    }
    corners.jmh.front()[2] -= 360.0f;
    corners.jmh.back()[2] += 360.0f;
    return corners;
}

std::array<float, CORNERS> find_reach_hues(const AppearanceModel& model, const AppearanceMatrices& matrices,
                                           float max_j, float limit) {
    const float response = std::pow(max_j / 100.0f, model.root);
    std::array<float, CORNERS> hues{};
    for (std::size_t i = 0; i < CORNERS; ++i) {
        hues[i] = rgb_to_jmh(model, matrices, reach_corner(matrices, UNIT_CORNERS[i], response, limit))[2];
    }
    // In the order of the cube, from the smallest on.
    std::rotate(hues.begin(), std::min_element(hues.begin(), hues.end()), hues.end());
    return hues;
}

std::vector<float> sample_hues(const CubeCorners& corners, const std::array<float, CORNERS>& reach_hues) {
    std::array<float, CORNERS> limit_hues{};
    for (std::size_t i = 0; i < CORNERS; ++i) {
        limit_hues[i] = corners.jmh[i + 1][2];
    }
    std::vector<float> exact; // Below 47 nit all reach hues are 0, and kept.
    std::set_union(limit_hues.begin(), limit_hues.end(), reach_hues.begin(), reach_hues.end(),
                   std::back_inserter(exact));
    const std::vector<std::size_t> samples = nearest_samples(exact);

    std::vector<float> hues{0};
    add_interval(hues, 0, exact.front(), samples.front());
    for (std::size_t k = 1; k < exact.size(); ++k) {
        add_interval(hues, exact[k - 1], exact[k], samples[k] - samples[k - 1]);
    }
    add_interval(hues, exact.back(), 360.0f, LAST_SAMPLE + 1 - samples.back());
    hues.front() = hues.back() - 360.0f;
    hues.push_back(hues[1] + 360.0f);
    hues.push_back(hues[2] + 360.0f);
    return hues;
}

} // namespace pixel
