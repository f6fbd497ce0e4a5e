#pragma once

#include <vector>

#include "pixel/ops.h"
#include "samples.h"

namespace pixel_test {

/// Pixels that look for weak places of a chain: awkward and random values in all combinations, pixels as
/// pictures have them, dark to bright, and greys that arrive at the ends of the chain's tables.
std::vector<Pixel> adversarial_pixels(const pixel::OpChain& chain);

/// Greys on both sides of each end of each table: neighbouring floats between which the value that enters the
/// table passes its end, in each channel.
std::vector<Pixel> greys_at_table_ends(const pixel::OpChain& chain);

} // namespace pixel_test
