#pragma once

#include <future>
#include <memory>
#include <string>
#include <vector>

#include "viewer/picture.h"

namespace workflow {
class Conversion;
}

namespace viewer {

/// How far two conversions of one picture are apart.
struct Difference {
    std::shared_ptr<const Picture> picture; ///< Absolute difference of red, green and blue; alpha is 1.
    double largest = 0;                     ///< Of all components that are finite in both.
    double mean = 0;
    int x = 0; ///< Where it is largest.
    int y = 0;
    std::size_t incomparable = 0; ///< Pixels in which one is finite and the other is not.
};

/// "largest 0.000123 at 5, 7; mean 1e-06".
std::string format_difference(const Difference& difference);

/// Compares RGBA pixels of a picture's size.
Difference compare_pixels(const Picture& picture, const std::vector<float>& gpu,
                          const std::vector<float>& cpu);

/// Converts the picture on all CPUs.
std::vector<float> convert_on_cpu(const Picture& picture, const workflow::Conversion& conversion,
                                  float exposure);

/// Converts the picture on the CPU and compares, in the background.
std::future<Difference> start_comparison(std::shared_ptr<const Picture> picture,
                                         std::shared_ptr<const workflow::Conversion> conversion,
                                         float exposure, std::vector<float> gpu);

} // namespace viewer
