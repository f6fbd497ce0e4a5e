#include "pixel/compile.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pixel {

namespace {

using Line = PrimaryStage::Line;

/// A factor about a pivot.
Line contrast_about(double factor, double pivot) {
    return {factor, pivot - pivot * factor};
}

Line offset_first(double offset, const Line& line) {
    return {line.scale, line.offset + offset * line.scale};
}

double reciprocal(double v) {
    return v == 0 ? 1 : 1 / v;
}

bool is_one(double v) {
    return static_cast<float>(v) == 1.0f;
}

/// `any_is_enough`: the power of all channels is left out where one of them is 1.
bool has_power(const PrimaryStage& stage, bool any_is_enough) {
    const double* const end = stage.power + 3;
    return !(any_is_enough ? std::any_of(stage.power, end, is_one) : std::all_of(stage.power, end, is_one));
}

struct Parameters {
    const GradingPrimary& op;
    std::size_t c;

    double sum(const Rgbm& v) const { return v[3] + v[c]; }
    double product(const Rgbm& v) const { return v[3] * v[c]; }
};

void compile_log(const GradingPrimary& op, std::size_t c, bool forward, PrimaryStage& stage) {
    const Parameters p{op, c};
    const double brightness = p.sum(op.brightness) * 6.25 / 1023, pivot = 0.5 + 0.5 * op.pivot;
    const double contrast = p.product(op.contrast), gamma = p.product(op.gamma);
    if (forward) {
        stage.before[c] = offset_first(brightness, contrast_about(contrast, pivot));
        stage.power[c] = 1 / gamma;
    } else {
        stage.power[c] = gamma;
        stage.after[c] = contrast_about(reciprocal(contrast), pivot);
        stage.after[c].offset -= brightness;
    }
}

void compile_linear(const GradingPrimary& op, std::size_t c, bool forward, PrimaryStage& stage) {
    const Parameters p{op, c};
    const double offset = p.sum(op.offset), exposure = std::exp2(p.sum(op.exposure));
    const double contrast = p.product(op.contrast);
    stage.power_from = 0;
    stage.power_width = 0.18 * std::exp2(op.pivot);
    if (forward) {
        stage.before[c] = {exposure, offset * exposure};
        stage.power[c] = contrast;
    } else {
        stage.power[c] = 1 / contrast;
        stage.after[c] = {1 / exposure, -offset};
    }
}

void compile_video(const GradingPrimary& op, std::size_t c, bool forward, PrimaryStage& stage) {
    const Parameters p{op, c};
    const double lift = p.sum(op.lift), offset = p.sum(op.offset) + lift, gamma = p.product(op.gamma);
    const double gain = p.product(op.gain), width = op.pivot_white - op.pivot_black;
    const double divisor = op.pivot_white / (gain == 0 ? 1 : gain) + lift - op.pivot_black;
    if (forward) {
        stage.before[c] =
            offset_first(offset, contrast_about(divisor == 0 ? 1 : width / divisor, op.pivot_black));
        stage.power[c] = 1 / gamma;
    } else {
        stage.power[c] = gamma;
        stage.after[c] = contrast_about(divisor / width, op.pivot_black);
        stage.after[c].offset -= offset;
    }
}

bool is_neutral(const PrimaryStage& stage, bool count_saturation) {
    const auto neutral = [](const Line& line) { return line.scale == 1 && line.offset == 0; };
    return std::all_of(stage.before, stage.before + 3, neutral) &&
           std::all_of(stage.after, stage.after + 3, neutral) && !stage.has_power && std::isinf(stage.low) &&
           std::isinf(stage.high) && !(count_saturation && stage.has_saturation);
}

/// Bounds beyond the floats are none.
double bound(double v) {
    return std::abs(v) > static_cast<double>(std::numeric_limits<float>::max())
               ? std::copysign(std::numeric_limits<double>::infinity(), v)
               : v;
}

PrimaryStage stage_of(const GradingPrimary& op) {
    PrimaryStage stage{};
    stage.forward = op.direction == Direction::Forward;
    stage.low = bound(op.clamp_black);
    stage.high = bound(op.clamp_white);
    stage.power_from = op.pivot_black;
    stage.power_width = op.pivot_white - op.pivot_black;
    const auto compile_channel = op.style == GradingStyle::Log      ? compile_log
                                 : op.style == GradingStyle::Linear ? compile_linear
                                                                    : compile_video;
    for (std::size_t c = 0; c < 3; ++c) {
        stage.before[c] = stage.after[c] = {1, 0};
        compile_channel(op, c, stage.forward, stage);
    }
    stage.has_power = has_power(stage, op.one_stops_all && op.style != GradingStyle::Log);
    stage.has_saturation = op.saturation != 1 && (stage.forward || op.saturation != 0);
    stage.saturation = stage.forward || op.saturation == 0 ? op.saturation : 1 / op.saturation;
    return stage;
}

} // namespace

Stage compile_primary(const GradingPrimary& op) {
    return stage_of(op);
}

bool changes_nothing(const GradingPrimary& op) {
    return is_neutral(stage_of(op), !op.one_stops_all);
}

} // namespace pixel
