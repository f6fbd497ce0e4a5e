#include "pixel/compile.h"

#include <algorithm>
#include <cmath>

namespace pixel {

namespace {

/// Reciprocal of the gamma of the BT.1886 display, which the video style works in.
constexpr double VIDEO_POWER = 0.54644808743169393;
constexpr double LEAST_CONTRAST = 0.001, LEAST_PIVOT = 0.001;
/// The offset of the inverse of the logarithmic style, for every step.
constexpr float INVERSE_LOG_STEP = 0.088f;

Stage diagonal(float scale, float offset) {
    DiagonalStage stage{};
    for (std::size_t c = 0; c < 3; ++c) {
        stage.scale[c] = scale;
        stage.offset[c] = offset;
        stage.active.set(c, true);
    }
    return stage;
}

Stage compile_logarithmic(const ExposureContrast& op) {
    const auto exposure = static_cast<float>(op.exposure), step = static_cast<float>(op.log_exposure_step);
    const auto middle = static_cast<float>(op.log_mid_gray);
    const auto pivot = static_cast<float>(std::max(LEAST_PIVOT, op.pivot));
    const float at_pivot = std::max(0.0f, std::log2(pivot / 0.18f) * step + middle);
    const double product = op.contrast * op.gamma;
    if (op.direction == Direction::Forward) {
        const auto contrast = static_cast<float>(std::max(LEAST_CONTRAST, product));
        return diagonal(contrast, (exposure * step - at_pivot) * contrast + at_pivot);
    }
    const auto contrast = static_cast<float>(std::max(LEAST_CONTRAST, 1 / product));
    return diagonal(contrast, at_pivot - at_pivot * contrast - exposure * INVERSE_LOG_STEP);
}

} // namespace

/// A contrast of exactly 1 keeps negative values.
Stage compile_exposure(const ExposureContrast& op) {
    if (op.style == ExposureStyle::Logarithmic) {
        return compile_logarithmic(op);
    }
    const double contrast = std::max(LEAST_CONTRAST, op.contrast * op.gamma);
    double gain = std::exp2(op.exposure), pivot = std::max(LEAST_PIVOT, op.pivot);
    if (op.style == ExposureStyle::Video) {
        gain = std::pow(gain, VIDEO_POWER);
        pivot = std::pow(pivot, VIDEO_POWER);
    }
    const bool forward = op.direction == Direction::Forward;
    if (static_cast<float>(contrast) == 1.0f) {
        return diagonal(static_cast<float>(forward ? gain : 1 / gain), -0.0f);
    }
    return forward ? ExposureStage{gain / pivot, contrast, pivot}
                   : ExposureStage{1 / pivot, 1 / contrast, pivot / gain};
}

} // namespace pixel
