#pragma once

#include <string>
#include <vector>

namespace workflow {

/// How far two conversions are from each other over some colors.
struct ColorDifference {
    std::string colors;     ///< "0 to 1".
    std::size_t points = 0; ///< Number of colors.
    double largest = 0;     ///< Absolute, of any component; infinite where only one of the two is finite.
    double mean = 0;        ///< Of all components.
    float at[3] = {};       ///< The color where it is largest.
    float expected[3] = {}; ///< That color converted by the reference.
    float actual[3] = {};   ///< And by what is compared with it.
};

/// Compares the results for `inputs`. All are red, green, blue, alpha; alpha is not compared.
ColorDifference compare_colors(const std::string& colors, const std::vector<float>& inputs,
                               const std::vector<float>& expected, const std::vector<float>& actual);

/// Every combination of the levels, red fastest, opaque.
std::vector<float> make_color_grid(const std::vector<float>& levels);

/// `count` levels at even distances from 0 to 1.
std::vector<float> make_even_levels(unsigned int count);

} // namespace workflow
