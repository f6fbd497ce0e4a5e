#include "workflow/color_difference.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace workflow {

namespace {

double get_difference(float a, float b) {
    if (a == b || (std::isnan(a) && std::isnan(b)))
        return 0.0;
    const double difference = std::fabs(static_cast<double>(a) - b);
    return std::isfinite(difference) ? difference : std::numeric_limits<double>::infinity();
}

} // namespace

ColorDifference compare_colors(const std::string& colors, const std::vector<float>& inputs,
                               const std::vector<float>& expected, const std::vector<float>& actual) {
    ColorDifference result;
    result.colors = colors;
    result.points = inputs.size() / 4;
    double sum = 0;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        if (i % 4 == 3)
            continue;
        const double difference = get_difference(expected[i], actual[i]);
        sum += difference;
        if (difference <= result.largest)
            continue;
        result.largest = difference;
        const std::size_t pixel = i - i % 4;
        std::copy_n(&inputs[pixel], 3, result.at);
        std::copy_n(&expected[pixel], 3, result.expected);
        std::copy_n(&actual[pixel], 3, result.actual);
    }
    result.mean = sum / (3.0 * static_cast<double>(result.points));
    return result;
}

std::vector<float> make_color_grid(const std::vector<float>& levels) {
    std::vector<float> pixels;
    for (const float blue : levels)
        for (const float green : levels)
            for (const float red : levels)
                pixels.insert(pixels.end(), {red, green, blue, 1.0f});
    return pixels;
}

std::vector<float> make_even_levels(unsigned int count) {
    std::vector<float> levels;
    for (unsigned int i = 0; i < count; ++i)
        levels.push_back(static_cast<float>(i) / static_cast<float>(count - 1));
    return levels;
}

} // namespace workflow
