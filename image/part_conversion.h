#pragma once

#include <functional>

#include "image/part_plan.h"
#include "image/pixel_layout.h"

namespace image {

/// Converts `width` x `height` working pixels (red, green, blue, alpha floats) in place. Called from several
/// threads at once; may throw.
using ConvertRows = std::function<void(float* rgba, unsigned int width, unsigned int height)>;

/// Makes the pixels of a planned part: colors through `convert` (an empty one leaves them), band of rows by
/// band of rows on up to `threads` threads; all other channels as they are. `output_spec` is the plan's spec
/// as the format took it. Where it and the input have the same layout `target` may be `source`. Pixels
/// outside the input's data window become zero. Throws what `convert` throws.
void convert_part(const OIIO::ImageSpec& input_spec, const PixelBuffer& source, const PartPlan& plan,
                  const OIIO::ImageSpec& output_spec, const ConvertRows& convert, int threads,
                  PixelBuffer& target);

/// True when `convert_part` may work in place.
bool can_convert_in_place(const OIIO::ImageSpec& input_spec, const PartPlan& plan,
                          const OIIO::ImageSpec& output_spec);

} // namespace image
