#pragma once

namespace image {

/// Rounding of colors to integers of few bits, before they are encoded in a type with more.
struct Quantization {
    int codes = 0;        ///< Largest code value: 255, 1023 or 4095; 0 to leave colors as they are.
    bool dithers = false; ///< Add noise to colors, not to alpha.

    bool is_needed() const { return codes > 255 || dithers; }
};

/// Rounds working pixels of the rows from `top` on, which start at column `left`, to the nearest code value,
/// from 0 to 1. NaN becomes 0.
///
/// With dithering, noise of less than half a code value is added before: uniform, with a mean of 0, and
/// independent for red, green and blue. It depends on the position of the pixel alone, so that results are
/// reproducible. A color that already is a code value is unchanged; others become the code above with a
/// probability that is their distance from the code below.
void quantize(const Quantization& quantization, float* rgba, unsigned int width, unsigned int height,
              int left, int top);

} // namespace image
