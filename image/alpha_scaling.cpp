#include "image/alpha_scaling.h"

#include "image/pixel_codec.h"

namespace image {

namespace {

/// Multiplies the color of each pixel by `get_factor(alpha)`.
template <class GetFactor>
void scale_colors(float* working, std::size_t pixels, const GetFactor& get_factor) {
    for (float* pixel = working; pixel != working + pixels * WORKING_CHANNELS; pixel += WORKING_CHANNELS) {
        const float factor = get_factor(pixel[3]);
        for (int i = 0; i < 3; ++i)
            pixel[i] *= factor;
    }
}

float divide_unless_zero(float alpha) {
    return alpha == 0.0f ? 1.0f : 1.0f / alpha;
}
float multiply_unless_zero(float alpha) {
    return alpha == 0.0f ? 1.0f : alpha;
}

} // namespace

void undo_alpha(const PartPlan& plan, float* working, std::size_t pixels) {
    if (plan.divides_by_alpha)
        scale_colors(working, pixels, divide_unless_zero);
}

void redo_alpha(const PartPlan& plan, float* working, std::size_t pixels) {
    if (plan.multiplies_by_alpha)
        scale_colors(working, pixels, multiply_unless_zero);
    if (plan.associates_alpha)
        scale_colors(working, pixels, [](float alpha) { return alpha; });
    if (plan.straightens_alpha)
        scale_colors(working, pixels, divide_unless_zero);
}

} // namespace image
