#pragma once

#include <cstddef>
#include <vector>

#include "pixel/packed_layout.h"
#include "pixel/stage.h"

namespace pixel {

/// Divides an image into blocks and runs all stages on each block, in place.
void run_packed(const std::vector<Stage>& stages, float* data, const PackedLayout& layout);
/// The same for planes of red, green, blue and alpha, which may be null. `row_stride` counts floats.
void run_planar(const std::vector<Stage>& stages, float* const planes[4], std::size_t width,
                std::size_t height, std::ptrdiff_t row_stride);

} // namespace pixel
