#pragma once

#include <future>
#include <memory>
#include <string>
#include <vector>

#include "viewer/image.h"
#include "workflow/color_difference.h"

namespace workflow {
class Conversion;
}

namespace viewer {

/// The difference between two conversions of an image.
struct Difference {
    workflow::ColorDifference values;
    std::shared_ptr<const Image> image; ///< Absolute difference of red, green and blue; alpha is 1.
    int x = 0;                          ///< Where it is largest.
    int y = 0;
};

/// "largest 0.000123 at 5, 7; mean 1e-06".
std::string format_difference(const Difference& difference);

/// Converts the image on the CPU, in all cores, and compares that with the result of the GPU, in the
/// background.
std::future<Difference> start_comparison(std::shared_ptr<const Image> image,
                                         std::shared_ptr<const workflow::Conversion> conversion,
                                         float exposure, std::vector<float> gpu);

} // namespace viewer
