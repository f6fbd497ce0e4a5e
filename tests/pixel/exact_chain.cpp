#include "exact_chain.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "exact_curves.h"
#include "exact_functions.h"
#include "exact_gradings.h"
#include "exact_tables.h"

namespace pixel_test {

namespace {

using namespace pixel;

bool is_diagonal(const Matrix& op) {
    for (std::size_t i = 0; i < 16; ++i) {
        if (i % 5 != 0 && op.m[i] != 0) {
            return false;
        }
    }
    return true;
}

/// The zeros of a diagonal matrix keep channels apart; those of others make NaN of an infinite channel.
ExactPixel evaluate(const Matrix& op, const ExactPixel& in) {
    const bool diagonal = is_diagonal(op);
    ExactPixel out = op.offset;
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column) {
            out[row] += diagonal && column != row ? 0 : op.m[4 * row + column] * in[column];
        }
    }
    return out;
}

/// NaN takes the lower bound, or the upper one without a lower one.
ExactPixel evaluate(const Range& op, ExactPixel in) {
    const bool both = op.min_in && op.max_in;
    for (std::size_t c = 0; c < 3; ++c) {
        double& x = in[c];
        if (both) {
            x = (x - *op.min_in) / (*op.max_in - *op.min_in) * (*op.max_out - *op.min_out) + *op.min_out;
        }
        if (op.min_out) {
            x = x > *op.min_out ? x : *op.min_out;
        }
        if (op.max_out) {
            x = x < *op.max_out ? x : *op.max_out;
        }
    }
    return in;
}

double clamp_unit(double x) {
    return x > 0 ? std::min(x, 1.0) : 0; // NaN becomes 0
}

/// The clamped style raises values of [0, 1]; the other leaves negative values alone. NaN becomes 0.
double raise_graded(double x, double power, CdlStyle style) {
    if (style == CdlStyle::Clamped) {
        return std::pow(clamp_unit(x), power);
    }
    x = std::isnan(x) ? 0 : x;
    return x < 0 ? x : std::pow(x, power);
}

void saturate(ExactPixel& v, double saturation) {
    const double luma = 0.2126 * v[0] + 0.7152 * v[1] + 0.0722 * v[2];
    for (std::size_t c = 0; c < 3; ++c) {
        v[c] = luma + saturation * (v[c] - luma);
    }
}

void clamp_color(ExactPixel& v, CdlStyle style) {
    for (std::size_t c = 0; c < 3 && style == CdlStyle::Clamped; ++c) {
        v[c] = clamp_unit(v[c]);
    }
}

ExactPixel evaluate(const Cdl& op, ExactPixel v) {
    if (op.direction == Direction::Forward) {
        for (std::size_t c = 0; c < 3; ++c) {
            v[c] = raise_graded(v[c] * op.slope[c] + op.offset[c], op.power[c], op.style);
        }
        saturate(v, op.saturation);
        clamp_color(v, op.style);
        return v;
    }
    const auto reciprocal = [](double parameter) { return 1 / std::max(0.01, parameter); };
    clamp_color(v, op.style);
    saturate(v, reciprocal(op.saturation));
    for (std::size_t c = 0; c < 3; ++c) {
        v[c] =
            (raise_graded(v[c], reciprocal(op.power[c]), op.style) - op.offset[c]) * reciprocal(op.slope[c]);
    }
    clamp_color(v, op.style);
    return v;
}

double raise(double x, double power, Negatives negatives) {
    switch (negatives) {
    case Negatives::Clamp:
        return std::pow(x > 0 ? x : 0, power); // NaN becomes 0
    case Negatives::Mirror:
        return std::copysign(std::pow(std::fabs(x), power), x);
    default:
        return x > 0 ? std::pow(x, power) : x;
    }
}

/// A channel of exponent 1 stays as it is, negatives too, unless they are clamped.
ExactPixel evaluate(const Exponent& op, ExactPixel v) {
    for (std::size_t c = 0; c < 4; ++c) {
        const double power = op.direction == Direction::Forward ? op.value[c] : 1 / op.value[c];
        v[c] = raise(v[c], power, op.negatives);
    }
    return v;
}

double toe(double x, double gamma, double offset, Direction direction) {
    const double g = std::max(1.000001, gamma), o = std::max(0.000001, offset);
    const double knee = o / (g - 1), curve_at_knee = std::pow((knee + o) / (1 + o), g);
    if (direction == Direction::Forward) {
        return x > knee ? std::pow((x + o) / (1 + o), g) : x * curve_at_knee / knee;
    }
    return x > curve_at_knee ? std::pow(x, 1 / g) * (1 + o) - o : x * knee / curve_at_knee;
}

ExactPixel evaluate(const LinearToeCurve& op, ExactPixel v) {
    const bool mirror = op.negatives == Negatives::Mirror;
    for (std::size_t c = 0; c < 4; ++c) {
        const double x = mirror ? std::fabs(v[c]) : v[c], y = toe(x, op.gamma[c], op.offset[c], op.direction);
        v[c] = mirror ? std::copysign(y, v[c]) : y;
    }
    return v;
}

/// NaN counts as the smallest normal float.
double floored_log2(double x) {
    constexpr double SMALLEST = std::numeric_limits<float>::min();
    return std::log2(x > SMALLEST ? x : SMALLEST);
}

ExactPixel evaluate(const Log& op, ExactPixel v) {
    const double log_of_base = std::log2(op.base);
    for (std::size_t c = 0; c < 3; ++c) {
        v[c] = op.direction == Direction::Forward ? floored_log2(v[c]) / log_of_base
                                                  : std::exp2(v[c] * log_of_base);
    }
    return v;
}

/// The curve of one channel, and the line below the break.
struct AffineLog {
    const LogAffine& op;
    std::size_t c;
    double log_of_base = std::log2(op.base);

    double curve(double x) const {
        return op.log_slope[c] * floored_log2(op.lin_slope[c] * x + op.lin_offset[c]) / log_of_base +
               op.log_offset[c];
    }
    double inverse_curve(double y) const {
        const double power = std::exp2((y - op.log_offset[c]) / op.log_slope[c] * log_of_base);
        return (power - op.lin_offset[c]) / op.lin_slope[c];
    }
    double at_break() const { return (*op.lin_break)[c]; }
    double slope() const {
        const double inner = op.lin_slope[c] * at_break() + op.lin_offset[c];
        return op.linear_slope ? (*op.linear_slope)[c]
                               : op.log_slope[c] * op.lin_slope[c] / (inner * std::log(op.base));
    }
    double forward(double x) const {
        return op.lin_break && x < at_break() ? curve(at_break()) + slope() * (x - at_break()) : curve(x);
    }
    double inverse(double y) const {
        return op.lin_break && y < curve(at_break()) ? at_break() + (y - curve(at_break())) / slope()
                                                     : inverse_curve(y);
    }
};

ExactPixel evaluate(const LogAffine& op, ExactPixel v) {
    for (std::size_t c = 0; c < 3; ++c) {
        const AffineLog log{op, c};
        v[c] = op.direction == Direction::Forward ? log.forward(v[c]) : log.inverse(v[c]);
    }
    return v;
}

ExactPixel evaluate(const Lut1D& op, const ExactPixel& in) {
    return evaluate_table_exactly(op, in);
}

ExactPixel evaluate(const Lut3D& op, const ExactPixel& in) {
    return evaluate_cube_exactly(op, in);
}

ExactPixel evaluate(const FixedFunction& op, const ExactPixel& in) {
    return evaluate_function_exactly(op, in);
}

ExactPixel evaluate(const RgbCurve& op, const ExactPixel& in) {
    return evaluate_curves_exactly(op, in);
}

ExactPixel evaluate(const HueCurve&, const ExactPixel&) {
    throw std::logic_error("the roundings of hue curves are part of them");
}

ExactPixel evaluate(const ExposureContrast& op, const ExactPixel& in) {
    return evaluate_exposure_exactly(op, in);
}

ExactPixel evaluate(const GradingPrimary& op, const ExactPixel& in) {
    return evaluate_primary_exactly(op, in);
}

ExactPixel evaluate(const GradingTone& op, const ExactPixel& in) {
    return evaluate_tone_exactly(op, in);
}

} // namespace

ExactPixel evaluate_exactly(const OpChain& chain, const Pixel& in) {
    ExactPixel value{};
    std::copy(in.begin(), in.end(), value.begin());
    for (const Op& op : chain) {
        value = std::visit([&](const auto& known) { return evaluate(known, value); }, op);
    }
    return value;
}

bool has_exact_value(const Op& op) {
    const auto* function = std::get_if<FixedFunction>(&op);
    const bool is_aces2 = function && (function->style == FixedStyle::AcesOutput20 ||
                                       function->style == FixedStyle::AcesRgbToJmh20 ||
                                       function->style == FixedStyle::AcesToneCompression20 ||
                                       function->style == FixedStyle::AcesGamutCompression20);
    return !is_aces2 && !std::holds_alternative<HueCurve>(op);
}

} // namespace pixel_test
