#include "exact_gradings.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pixel_test {

namespace {

using pixel::Direction;
using pixel::GradingPrimary;
using pixel::GradingStyle;

void saturate(ExactPixel& v, double amount) {
    const double luma = 0.2126 * v[0] + 0.7152 * v[1] + 0.0722 * v[2];
    for (std::size_t c = 0; c < 3; ++c) {
        v[c] = luma + amount * (v[c] - luma);
    }
}

/// Bounds beyond the floats are none; NaN stays.
double clamp(const GradingPrimary& op, double v) {
    constexpr double LARGEST = std::numeric_limits<float>::max();
    if (op.clamp_black >= -LARGEST && v < op.clamp_black) {
        return op.clamp_black;
    }
    return op.clamp_white <= LARGEST && v > op.clamp_white ? op.clamp_white : v;
}

double contrasted(double v, double factor, double pivot) {
    return (v - pivot) * factor + pivot;
}

double raised(double v, double from, double width, double exponent) {
    const double distance = v - from;
    return std::copysign(std::pow(std::fabs(distance) / width, exponent), distance) * width + from;
}

/// The three curves of a primary grading before saturation; the inverse ones behind it.
struct Primary {
    const GradingPrimary& op;

    double exponent(std::size_t c) const {
        return op.style == GradingStyle::Linear ? op.contrast[3] * op.contrast[c]
                                                : 1 / (op.gamma[3] * op.gamma[c]);
    }
    bool has_power() const {
        const auto is_one = [&](std::size_t c) {
            return static_cast<float>(exponent(c)) == 1.0f || static_cast<float>(1 / exponent(c)) == 1.0f;
        };
        return op.one_stops_all && op.style != GradingStyle::Log ? !is_one(0) && !is_one(1) && !is_one(2)
                                                                 : !(is_one(0) && is_one(1) && is_one(2));
    }
    double power(double v, double e) const {
        if (!has_power()) {
            return v;
        }
        return op.style == GradingStyle::Linear
                   ? raised(v, 0, 0.18 * std::exp2(op.pivot), e)
                   : raised(v, op.pivot_black, op.pivot_white - op.pivot_black, e);
    }
    double forward(double v, std::size_t c) const {
        const double offset = op.offset[3] + op.offset[c], lift = op.lift[3] + op.lift[c];
        switch (op.style) {
        case GradingStyle::Log:
            v = contrasted(v + (op.brightness[3] + op.brightness[c]) * 6.25 / 1023,
                           op.contrast[3] * op.contrast[c], 0.5 + 0.5 * op.pivot);
            break;
        case GradingStyle::Linear:
            v = (v + offset) * std::exp2(op.exposure[3] + op.exposure[c]);
            break;
        case GradingStyle::Video:
            v = contrasted(v + offset + lift, 1 / slope(c), op.pivot_black);
            break;
        }
        return power(v, exponent(c));
    }
    double inverse(double v, std::size_t c) const {
        const double offset = op.offset[3] + op.offset[c], lift = op.lift[3] + op.lift[c];
        v = power(v, 1 / exponent(c));
        switch (op.style) {
        case GradingStyle::Log:
            return contrasted(v, 1 / (op.contrast[3] * op.contrast[c]), 0.5 + 0.5 * op.pivot) -
                   (op.brightness[3] + op.brightness[c]) * 6.25 / 1023;
        case GradingStyle::Linear:
            return v / std::exp2(op.exposure[3] + op.exposure[c]) - offset;
        default:
            return contrasted(v, slope(c), op.pivot_black) - offset - lift;
        }
    }
    /// The inverse of lift and gain together.
    double slope(std::size_t c) const {
        return (op.pivot_white / (op.gain[3] * op.gain[c]) + op.lift[3] + op.lift[c] - op.pivot_black) /
               (op.pivot_white - op.pivot_black);
    }
};

} // namespace

ExactPixel evaluate_exposure_exactly(const pixel::ExposureContrast& op, const ExactPixel& in) {
    const bool forward = op.direction == Direction::Forward;
    const double product = std::max(0.001, op.contrast * op.gamma), k = forward ? product : 1 / product;
    double gain = std::exp2(op.exposure), pivot = std::max(0.001, op.pivot);
    if (op.style == pixel::ExposureStyle::Video) {
        gain = std::pow(gain, 0.54644808743169393);
        pivot = std::pow(pivot, 0.54644808743169393);
    }
    ExactPixel out = in;
    for (std::size_t c = 0; c < 3; ++c) {
        const double v = in[c], light = v > 0 ? v : 0; // NaN becomes 0
        if (op.style == pixel::ExposureStyle::Logarithmic) {
            const double q = std::max(0.0, std::log2(pivot / 0.18) * op.log_exposure_step + op.log_mid_gray);
            const double inverse = std::max(0.001, 1 / (op.contrast * op.gamma));
            out[c] = forward ? (v + op.exposure * op.log_exposure_step - q) * k + q
                             : (v - q) * inverse + q - op.exposure * 0.088;
        } else if (static_cast<float>(product) == 1.0f) {
            out[c] = forward ? v * gain : v / gain;
        } else {
            out[c] = forward ? std::pow(light * gain / pivot, k) * pivot
                             : std::pow(light / pivot, k) * pivot / gain;
        }
    }
    return out;
}

ExactPixel evaluate_primary_exactly(const GradingPrimary& op, const ExactPixel& in) {
    const Primary curves{op};
    ExactPixel v = in;
    if (op.direction == Direction::Forward) {
        for (std::size_t c = 0; c < 3; ++c) {
            v[c] = curves.forward(v[c], c);
        }
        if (op.saturation != 1) {
            saturate(v, op.saturation);
        }
        for (std::size_t c = 0; c < 3; ++c) {
            v[c] = clamp(op, v[c]);
        }
        return v;
    }
    for (std::size_t c = 0; c < 3; ++c) {
        v[c] = clamp(op, v[c]);
    }
    if (op.saturation != 1 && op.saturation != 0) {
        saturate(v, 1 / op.saturation);
    }
    for (std::size_t c = 0; c < 3; ++c) {
        v[c] = curves.inverse(v[c], c);
    }
    return v;
}

} // namespace pixel_test
