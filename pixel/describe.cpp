#include "pixel/describe.h"

#include <array>
#include <charconv>

namespace pixel {

namespace {

/// Shortest form that reads back to the same double, whatever the process locale; minus zero is zero.
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
        return "1D table of " + std::to_string(op.length) + " entries" +
               (op.domain == InputDomain::Half ? " over the 16-bit floats" : "") +
               (op.channels == 1 ? ", one curve" : ", three curves") + suffix(op.direction);
    }
    std::string operator()(const Lut3D& op) const {
        return "3D table of edge " + std::to_string(op.edge) +
               (op.interpolation == CubeInterpolation::Tetrahedral ? ", tetrahedral" : ", trilinear");
    }
};

} // namespace

std::string describe_op(const Op& op) {
    return std::visit(Describer{}, op);
}

} // namespace pixel
