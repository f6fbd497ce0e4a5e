#pragma once

#include <functional>
#include <vector>

#include "image/part_plan.h"
#include "image/pixel_layout.h"

namespace image {

/// Converts `width` x `height` working pixels (red, green, blue, alpha floats) in place. Called from several
/// threads at once; may throw.
using ConvertRows = std::function<void(float* rgba, unsigned int width, unsigned int height)>;

/// Writes the pixels of a planned part to `target`: colors converted by `convert` (unchanged if it is empty),
/// in bands of rows on up to `threads` threads; data channels copied. `output_spec` is what
/// ImageWriter::open_part returned, and `target` must have its size. `target` may be `source` if
/// can_convert_in_place. Pixels outside the input's data window become 0. `part_alpha`
/// is the alpha of all pixels of the input for layers that have that of another part. Returns the layers, as
/// positions in `plan`, whose own alpha is 0 everywhere. Throws what `convert` throws.
std::vector<std::size_t> convert_part(const OIIO::ImageSpec& input_spec, const PixelBuffer& source,
                                      const PartPlan& plan, const OIIO::ImageSpec& output_spec,
                                      const ConvertRows& convert, int threads, PixelBuffer& target,
                                      const float* part_alpha = nullptr);

/// True when the input and the output have the same layout, so that `convert_part` can work in place.
bool can_convert_in_place(const OIIO::ImageSpec& input_spec, const PartPlan& plan,
                          const OIIO::ImageSpec& output_spec);

} // namespace image
