#pragma once

#include <vector>

#include "pixel/ops.h"
#include "samples.h"

namespace pixel_test {

/// Pixels that look for weak places of a chain: awkward and random values in all combinations, pixels as
/// images have them, dark to bright, and grays that arrive at the ends of the chain's tables.
std::vector<Pixel> adversarial_pixels(const pixel::OpChain& chain);

/// Grays on both sides of each end of each table: neighboring floats between which the value that enters the
/// table passes its end, in each channel.
std::vector<Pixel> grays_at_table_ends(const pixel::OpChain& chain);

} // namespace pixel_test
