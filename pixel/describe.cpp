#include "pixel/describe.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "pixel/fixed_function.h"
#include "pixel/hue_spline.h"

namespace pixel {

namespace {

/// Shortest form that reads back to the same double, in every locale; minus zero is zero.
std::string number(double v) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, v == 0 ? 0 : v).ptr;
    return std::string(text, end);
}

std::string numbers(const double* values, std::size_t count) {
    std::string out;
    for (std::size_t i = 0; i < count; ++i) {
        out += (i ? " " : "") + number(values[i]);
    }
    return out;
}

template <std::size_t N>
std::string numbers(const std::array<double, N>& values) {
    return numbers(values.data(), N);
}

const char* suffix(Direction direction) {
    return direction == Direction::Inverse ? ", inverse" : "";
}

const char* words(Negatives style) {
    switch (style) {
    case Negatives::Clamp:
        return "negatives clamped";
    case Negatives::Mirror:
        return "negatives mirrored";
    case Negatives::PassThrough:
        return "negatives unchanged";
    case Negatives::Linear:
        return "negatives linear";
    }
    return "";
}

const char* words(GradingStyle style) {
    switch (style) {
    case GradingStyle::Log:
        return "log style";
    case GradingStyle::Linear:
        return "linear style";
    case GradingStyle::Video:
        return "video style";
    }
    return "";
}

bool is_diagonal(const std::vector<ControlPoint>& curve) {
    return std::all_of(curve.begin(), curve.end(),
                       [](const ControlPoint& p) { return p.x == p.y && p.slope == 0; });
}

std::string bounds(const std::optional<double>& low, const std::optional<double>& high) {
    return "[" + (low ? number(*low) : "-inf") + ", " + (high ? number(*high) : "inf") + "]";
}

struct Describer {
    std::string operator()(const Matrix& op) const {
        std::string out = "matrix";
        for (std::size_t row = 0; row < 4; ++row) {
            out += (row ? " / " : " ") + numbers(op.m.data() + 4 * row, 4);
        }
        return out + ", offset " + numbers(op.offset);
    }
    std::string operator()(const Range& op) const {
        if (op.min_in == op.min_out && op.max_in == op.max_out) {
            return "clamp to " + bounds(op.min_in, op.max_in);
        }
        return "range " + bounds(op.min_in, op.max_in) + " to " + bounds(op.min_out, op.max_out);
    }
    std::string operator()(const Cdl& op) const {
        return std::string("CDL, ") + (op.style == CdlStyle::Clamped ? "clamped" : "unclamped") + ", slope " +
               numbers(op.slope) + ", offset " + numbers(op.offset) + ", power " + numbers(op.power) +
               ", saturation " + number(op.saturation) + suffix(op.direction);
    }
    std::string operator()(const Exponent& op) const {
        return "exponent " + numbers(op.value) + ", " + words(op.negatives) + suffix(op.direction);
    }
    std::string operator()(const LinearToeCurve& op) const {
        return "power curve with a linear toe, gamma " + numbers(op.gamma) + ", offset " +
               numbers(op.offset) + ", " + words(op.negatives) + suffix(op.direction);
    }
    std::string operator()(const Log& op) const {
        return "log to base " + number(op.base) + suffix(op.direction);
    }
    std::string operator()(const LogAffine& op) const {
        std::string out = "log to base " + number(op.base) + ", log slope " + numbers(op.log_slope) +
                          ", log offset " + numbers(op.log_offset) + ", linear slope " +
                          numbers(op.lin_slope) + ", linear offset " + numbers(op.lin_offset);
        if (op.lin_break) {
            out += ", a line below " + numbers(*op.lin_break);
        }
        if (op.linear_slope) {
            out += " of slope " + numbers(*op.linear_slope);
        }
        return out + suffix(op.direction);
    }
    std::string operator()(const Lut1D& op) const {
        return "1D LUT of " + std::to_string(op.length) + " entries" +
               (op.domain == InputDomain::Half ? " over the 16-bit floats" : "") +
               (op.channels == 1 ? ", one curve" : ", three curves") +
               (op.restores_hue ? ", hue restored" : "") + suffix(op.direction);
    }
    std::string operator()(const Lut3D& op) const {
        return "3D LUT of edge " + std::to_string(op.edge) +
               (op.direction == Direction::Inverse                   ? ", inverse"
                : op.interpolation == CubeInterpolation::Tetrahedral ? ", tetrahedral"
                                                                     : ", trilinear");
    }
    std::string operator()(const FixedFunction& op) const {
        const std::string parameters = numbers(op.parameters.data(), op.parameters.size());
        return kind_of(op.style).words + (parameters.empty() ? "" : ", parameters " + parameters) +
               suffix(op.direction);
    }
    std::string operator()(const RgbCurve& op) const {
        constexpr const char* CHANNELS[] = {"red", "green", "blue", "master"};
        std::string out = std::string("RGB curves, ") + words(op.style) +
                          (op.bypass_lin_to_log ? ", without the step to a logarithm" : "");
        for (std::size_t c = 0; c < 4; ++c) {
            if (!is_diagonal(op.curve[c])) {
                out += std::string(", ") + CHANNELS[c] + " of " + std::to_string(op.curve[c].size()) +
                       " control points";
            }
        }
        return out + suffix(op.direction);
    }
    std::string operator()(const HueCurve& op) const {
        constexpr const char* NAMES[] = {"hue-hue", "hue-sat", "hue-lum", "lum-sat",
                                         "sat-sat", "lum-lum", "sat-lum", "hue-fx"};
        std::string out = std::string("hue curves, ") + words(op.style) +
                          (op.converts_to_hsy ? "" : ", without the conversion to hue, saturation and luma");
        for (std::size_t i = 0; i < op.curve.size(); ++i) {
            if (!is_neutral(static_cast<HueCurveKind>(i), op.curve[i])) {
                out += std::string(", ") + NAMES[i] + " of " + std::to_string(op.curve[i].size()) +
                       " control points";
            }
        }
        return out + suffix(op.direction);
    }
    std::string operator()(const ExposureContrast& op) const {
        constexpr const char* STYLES[] = {"linear", "video", "logarithmic"};
        std::string out = std::string("exposure and contrast, ") + STYLES[static_cast<int>(op.style)] +
                          " style, exposure " + number(op.exposure) + ", contrast " + number(op.contrast) +
                          ", gamma " + number(op.gamma) + ", pivot " + number(op.pivot);
        if (op.style == ExposureStyle::Logarithmic) {
            out += ", step " + number(op.log_exposure_step) + ", mid gray " + number(op.log_mid_gray);
        }
        return out + suffix(op.direction);
    }
    std::string operator()(const GradingPrimary& op) const {
        std::string out = std::string("primary grading, ") + words(op.style);
        const auto add = [&](const char* name, const Rgbm& value, double neutral) {
            if (value != Rgbm{neutral, neutral, neutral, neutral}) {
                out += std::string(", ") + name + " " + numbers(value);
            }
        };
        add("brightness", op.brightness, 0);
        add("contrast", op.contrast, 1);
        add("gamma", op.gamma, 1);
        add("offset", op.offset, 0);
        add("exposure", op.exposure, 0);
        add("lift", op.lift, 0);
        add("gain", op.gain, 1);
        return out + ", saturation " + number(op.saturation) + suffix(op.direction);
    }
    std::string operator()(const GradingTone& op) const {
        std::string out = std::string("tone grading, ") + words(op.style);
        const auto add = [&](const char* name, const ToneZone& zone) {
            if (zone.value != Rgbm{1, 1, 1, 1}) {
                out += std::string(", ") + name + " " + numbers(zone.value);
            }
        };
        add("blacks", op.blacks);
        add("shadows", op.shadows);
        add("midtones", op.midtones);
        add("highlights", op.highlights);
        add("whites", op.whites);
        return out + (op.s_contrast == 1 ? "" : ", s-contrast " + number(op.s_contrast)) +
               suffix(op.direction);
    }
};

} // namespace

std::string describe_op(const Op& op) {
    return std::visit(Describer{}, op);
}

} // namespace pixel
