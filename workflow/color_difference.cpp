#include "workflow/color_difference.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace workflow {

namespace {

/// Absolute difference; equal values that are not finite do not differ.
float get_difference(float expected, float actual, bool& is_comparable) {
    if (std::isfinite(expected) && std::isfinite(actual))
        return std::abs(expected - actual);
    is_comparable = is_comparable && (expected == actual || (std::isnan(expected) && std::isnan(actual)));
    return 0;
}

} // namespace

std::string format_color(const float (&rgb)[3]) {
    return fmt::format("{:.5g} {:.5g} {:.5g}", rgb[0], rgb[1], rgb[2]);
}

ColorDifference compare_colors(const std::string& colors, const std::vector<float>& inputs,
                               const std::vector<float>& expected, const std::vector<float>& actual,
                               std::vector<float>* differences) {
    ColorDifference result;
    result.colors = colors;
    result.points = inputs.size() / 4;
    if (differences)
        differences->assign(inputs.size(), 1.0f);
    double sum = 0;
    for (std::size_t i = 0; i + 3 < inputs.size(); i += 4) {
        bool is_comparable = true;
        for (std::size_t component = i; component < i + 3; ++component) {
            const float difference = get_difference(expected[component], actual[component], is_comparable);
            if (differences)
                (*differences)[component] = difference;
            sum += difference;
            if (difference > result.largest) {
                result.largest = difference;
                result.position = i / 4;
            }
        }
        result.incomparable += is_comparable ? 0 : 1;
    }
    if (result.points == 0)
        return result;
    result.mean = sum / (3.0 * static_cast<double>(result.points));
    std::copy_n(&inputs[result.position * 4], 3, result.at);
    std::copy_n(&expected[result.position * 4], 3, result.expected);
    std::copy_n(&actual[result.position * 4], 3, result.actual);
    return result;
}

std::string describe_incomparable(const ColorDifference& difference) {
    if (difference.incomparable == 0)
        return "";
    return fmt::format("{} {} finite in only one of the two", difference.incomparable,
                       difference.incomparable == 1 ? "color is" : "colors are");
}

std::vector<float> make_grays(const std::vector<float>& levels) {
    std::vector<float> rgba;
    for (const float level : levels)
        rgba.insert(rgba.end(), {level, level, level, 1.0f});
    return rgba;
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
