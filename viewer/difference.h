#pragma once

#include <future>
#include <memory>
#include <string>
#include <vector>

#include "viewer/image.h"

namespace workflow {
class Conversion;
}

namespace viewer {

/// The difference between two conversions of an image.
struct Difference {
    std::shared_ptr<const Image> image; ///< Absolute difference of red, green and blue; alpha is 1.
    double largest = 0;                 ///< Of all components that are finite in both.
    double mean = 0;
    int x = 0; ///< Where it is largest.
    int y = 0;
    std::size_t incomparable = 0; ///< Pixels in which one is finite and the other is not.
};

/// "largest 0.000123 at 5, 7; mean 1e-06".
std::string format_difference(const Difference& difference);

/// Compares RGBA pixels of an image's size.
Difference compare_pixels(const Image& image, const std::vector<float>& gpu, const std::vector<float>& cpu);

/// Converts the image on all CPUs.
std::vector<float> convert_on_cpu(const Image& image, const workflow::Conversion& conversion, float exposure);

/// Converts the image on the CPU and compares, in the background.
std::future<Difference> start_comparison(std::shared_ptr<const Image> image,
                                         std::shared_ptr<const workflow::Conversion> conversion,
                                         float exposure, std::vector<float> gpu);

} // namespace viewer
