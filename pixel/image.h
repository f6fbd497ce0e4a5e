#pragma once

#include <cstddef>
#include <vector>

#include "pixel/chain.h"
#include "pixel/stage.h"

namespace pixel {

/// Cuts images into blocks, runs all stages on one block after the other, and puts the results back.
void run_packed(const std::vector<Stage>& stages, float* data, const PackedLayout& layout);
void run_planar(const std::vector<Stage>& stages, float* const planes[4], std::size_t width,
                std::size_t height, std::ptrdiff_t row_stride);

} // namespace pixel
