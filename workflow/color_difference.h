#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace workflow {

/// How far two conversions are from each other over some colors.
struct ColorDifference {
    std::string colors;           ///< "0 to 1".
    std::size_t points = 0;       ///< Number of colors.
    double largest = 0;           ///< Absolute, of any component that is finite in both.
    double mean = 0;              ///< Of these components; others count as 0.
    std::size_t position = 0;     ///< Of the color where it is largest, among the colors.
    float at[3] = {};             ///< That color.
    float expected[3] = {};       ///< That color converted by the reference.
    float actual[3] = {};         ///< And by what is compared with it.
    std::size_t incomparable = 0; ///< Colors with a component that is finite in only one of the two.
};

/// "0.18 0.18 0.18", with five digits.
std::string format_color(const float (&rgb)[3]);

/// Compares the results for `inputs`. All are red, green, blue, alpha; alpha is not compared. `differences`
/// receives the absolute difference of every component, alpha 1, if it is not null.
ColorDifference compare_colors(const std::string& colors, const std::vector<float>& inputs,
                               const std::vector<float>& expected, const std::vector<float>& actual,
                               std::vector<float>* differences = nullptr);

/// "12 colors are finite in only one of the two"; empty when there are none.
std::string describe_incomparable(const ColorDifference& difference);

/// A gray for each level, opaque.
std::vector<float> make_grays(const std::vector<float>& levels);

/// Every combination of the levels, red fastest, opaque.
std::vector<float> make_color_grid(const std::vector<float>& levels);

/// `count` levels at even distances from 0 to 1.
std::vector<float> make_even_levels(unsigned int count);

} // namespace workflow
