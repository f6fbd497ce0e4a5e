#pragma once

#include "exact_pixel.h"
#include "pixel/ops.h"
#include "samples.h"

namespace pixel_test {

/// The value of a chain of operations in double precision: the parameters as they are given, nothing rounded
/// to floats between the operations, the C library's functions. Written from the definitions of the
/// operations in pixel/ops.h; shares no code with the kernels.
ExactPixel evaluate_exactly(const pixel::OpChain& chain, const Pixel& in);

/// False for ACES 2.0 functions and hue curves: their results include the roundings of OpenColorIO's floats,
/// so that a double-precision result is not a better reference. Evaluating them throws std::logic_error.
bool has_exact_value(const pixel::Op& op);

} // namespace pixel_test
