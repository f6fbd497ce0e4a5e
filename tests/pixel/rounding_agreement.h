#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "library_agreement.h"

/// Agreement of operations whose results depend on roundings: OpenColorIO's tables and the order of its steps
/// in floats are the reference, not a double-precision result.
namespace pixel_test {

/// How pixels compare with OpenColorIO's, by the largest difference of a channel.
struct RoundingDifference {
    std::size_t pixels = 0, equal = 0;
    std::size_t not_numbers = 0; ///< values that are not finite where OpenColorIO's are
    std::size_t beyond = 0;      ///< pixels beyond 1e-6 + 1e-5 * the largest channel
    double largest = 0;          ///< in those tolerances
    std::string words;           ///< for the last of those beyond

    void join(const RoundingDifference& other);
};

/// True if an ACES 2.0 function or a hue curve is part of the chain; in `direction` only, unless null.
bool has_rounded_steps(const pixel::OpChain& chain, const pixel::Direction* direction = nullptr);

/// Compares the translation of a processor on every instruction set.
RoundingDifference rounding_difference(const library::ConstProcessorRcPtr& processor,
                                       const std::vector<Pixel>& in);

} // namespace pixel_test
