#include <algorithm>
#include <array>
#include <cmath>

#include "exact_curves.h"
#include "exact_gradings.h"

namespace pixel_test {

namespace {

using pixel::Direction;
using pixel::GradingStyle;
using pixel::GradingTone;
using pixel::ToneZone;

/// From (x0, y0) with slope m0 to x1 with slope m1.
struct Segment {
    double x0, x1, y0, m0, m1;

    double width() const { return x1 - x0; }
    double y1() const { return y0 + (m0 + m1) / 2 * width(); }
    double at(double x) const {
        const double t = (x - x0) / width();
        return y0 + width() * t * (m0 + t * (m1 - m0) / 2);
    }
    double where(double y) const {
        const double a = (m1 - m0) * width() / 2, b = m0 * width(), c = y0 - y;
        return x0 + width() * (-2 * c / (std::sqrt(b * b - 4 * a * c) + b));
    }
    /// Lines go on outside.
    double with_lines(double x) const {
        return x < x0 ? y0 + (x - x0) * m0 : x >= x1 ? y1() + (x - x1) * m1 : at(x);
    }
    double inverse_with_lines(double y) const {
        return y < y0 ? x0 + (y - y0) / m0 : y >= y1() ? x1 + (y - y1()) / m1 : where(y);
    }
};

struct Range {
    double top, contrast_top, bottom, pivot;
};

Range range_of(GradingStyle style) {
    return style == GradingStyle::Linear ? Range{7.5, 6.5, -5.5, 0} : Range{1, 1, 0, 0.4};
}

std::array<Segment, 5> midtone_segments(const ToneZone& zone, double value, const Range& range) {
    const double b = range.bottom, t = range.top, d = 0.9 * (std::clamp(value, 0.01, 1.99) - 1);
    const double w = std::clamp(zone.width, 0.01, 0.95 * (t - b));
    const double center = std::clamp(zone.start, b + 0.51 * w, t - 0.51 * w);
    const double x1 = center - w / 2, x2 = x1 + w / 4, x3 = x1 + 3 * w / 4, x4 = x1 + w;
    double m1 = 1 + 0.4 * d, m4 = 1 - 0.4 * d;
    const double m2 = 1 + d, m3 = 1 - d;
    if (center <= (b + t) / 2) {
        const double area =
            (x1 - b) * (m1 - 1) / 2 + (x2 - x1) * ((m1 - 1) + (m2 - m1) / 2) + (center - x2) * (m2 - 1) / 2;
        m4 = (-(t - x4) / 2 + (x4 - x3) * (m3 / 2 - 1) + (x3 - center) * (m3 - 1) / 2 + area) /
             (-(t - x3) / 2);
    } else {
        const double area =
            (t - x4) * (m4 - 1) / 2 + (x4 - x3) * ((m4 - 1) + (m3 - m4) / 2) + (x3 - center) * (m3 - 1) / 2;
        m1 = (-(x1 - b) / 2 + (x2 - x1) * (m2 / 2 - 1) + (center - x2) * (m2 - 1) / 2 + area) /
             (-(x2 - b) / 2);
    }
    std::array<Segment, 5> out{};
    out[0] = {b, x1, b, 1, m1};
    out[1] = {x1, x2, out[0].y1(), m1, m2};
    out[2] = {x2, x3, out[1].y1(), m2, m3};
    out[3] = {x3, x4, out[2].y1(), m3, m4};
    out[4] = {x4, t, out[3].y1(), m4, 1};
    return out;
}

double midtones(const ToneZone& zone, double value, const Range& range, bool forward, double v) {
    const auto segments = midtone_segments(zone, value, range);
    if (forward ? v < range.bottom : v < segments[0].y0) {
        return v;
    }
    for (const Segment& segment : segments) {
        if (forward ? v < segment.x1 : v < segment.y1()) {
            return forward ? segment.at(v) : segment.where(v);
        }
    }
    return forward ? v - range.top + segments[4].y1() : v - segments[4].y1() + range.top;
}

/// The curve of highlights below and shadows above 1, from slope m0 to slope m2.
struct Shoulder {
    double x0, x2, m0, m2;

    double x1() const { return (x0 + x2) / 2; }
    double y1() const {
        const double left = x1() - x0, right = x2 - x1();
        return ((2 * x0 + m0 * left) * right + (2 * x2 - m2 * right) * left) / (2 * (x2 - x0));
    }
    double at(double x) const {
        if (x < x0) {
            return x0 + (x - x0) * m0;
        }
        if (x >= x2) {
            return x2 + (x - x2) * m2;
        }
        if (x < x1()) {
            const double h = x1() - x0, t = (x - x0) / h;
            return x0 * (1 - t * t) + y1() * t * t + m0 * (1 - t) * t * h;
        }
        const double h = x2 - x1(), t = (x - x1()) / h;
        return y1() * (1 - t) * (1 - t) + x2 * (2 - t) * t + m2 * (t - 1) * t * h;
    }
    double where(double y) const {
        if (y < x0) {
            return x0 + (y - x0) / m0;
        }
        if (y >= x2) {
            return x2 + (y - x2) / m2;
        }
        const bool left = y < y1();
        const double h = left ? x1() - x0 : x2 - x1();
        const double b = left ? m0 * h : 2 * x2 - 2 * y1() - m2 * h;
        const double a = left ? y1() - x0 - b : y1() - x2 + m2 * h, c = (left ? x0 : y1()) - y;
        return (left ? x0 : x1()) + h * (-2 * c / (std::sqrt(b * b - 4 * a * c) + b));
    }
};

double highlights(const ToneZone& zone, double value, bool forward, double v) {
    const double u = 2 - value, slope = std::max(0.01, u < 1 ? u : 2 - u);
    const Shoulder curve{std::min(zone.start, zone.width - 0.01), zone.width, 1, slope};
    return (u < 1) == forward ? curve.at(v) : curve.where(v);
}

double shadows(const ToneZone& zone, double value, bool forward, double v) {
    const double slope = std::max(0.01, value < 1 ? value : 2 - value);
    const Shoulder curve{zone.width, std::max(zone.start, zone.width + 0.01), slope, 1};
    return (value < 1) == forward ? curve.at(v) : curve.where(v);
}

double whites(double start, double width, double value, bool forward, double v) {
    const double x0 = start, x1 = start + width;
    if (value < 1) {
        const Segment segment{x0, x1, x0, 1, std::max(0.01, value)};
        return forward ? segment.with_lines(v) : segment.inverse_with_lines(v);
    }
    const double m1 = std::max(0.01, 2 - value), gain = (1 + m1) / 2;
    const Segment segment{x0, x1, x0, 1, m1};
    const double md = 1 / (1 + 0.99 * (m1 - 1));
    const double a = (1 / m1 - md) / (2 * 0.01 * width), y1 = width / gain + x0;
    const double scaled = (v - x0) * gain + x0;
    if (forward) {
        if (v >= x1) {
            return y1 + (v - x1) / m1 + a * (v - x1) * (v - x1);
        }
        return ((scaled < x0 ? scaled : segment.where(scaled)) - x0) / gain + x0;
    }
    if (v >= y1) {
        const double c = y1 - v;
        return x1 - 2 * c / (std::sqrt(1 / (m1 * m1) - 4 * a * c) + 1 / m1);
    }
    return ((scaled < x0 ? scaled : segment.at(scaled)) - x0) / gain + x0;
}

double blacks(double start, double width, double value, bool forward, double v) {
    const double x1 = start, x0 = start - width;
    const double m0 = std::max(0.01, value < 1 ? value : 2 - value), gain = (m0 + 1) / 2;
    const Segment segment{x0, x1, x1 - gain * width, m0, 1};
    if (value > 1) {
        return forward ? segment.with_lines(v) : segment.inverse_with_lines(v);
    }
    const double scaled = (v - x1) * gain + x1;
    return ((forward ? segment.inverse_with_lines(scaled) : segment.with_lines(scaled)) - x1) / gain + x1;
}

struct Contrast {
    double k, pivot;
    Segment top, bottom;

    Contrast(double value, const Range& range)
        : k(value > 1 ? 1 / (1.8125 - 0.8125 * std::min(value, 1.99))
                      : 0.28125 + 0.71875 * std::max(value, 0.01)),
          pivot(range.pivot) {
        top = upper(range.contrast_top - pivot);
        const Segment mirrored = upper(pivot - range.bottom);
        top.x0 += pivot;
        top.x1 += pivot;
        top.y0 += pivot;
        bottom = {pivot - mirrored.x1, pivot - mirrored.x0, pivot - mirrored.y1(), mirrored.m1, k};
    }

    /// The part above the pivot, as distances from it, that ends at `end`: from three quarters below.
    Segment upper(double end) const {
        const double y = end / 4, x = y / k;
        double m = 1 / k;
        const double center = (end - y - m * end + k * x) / (k - m);
        double to = 2 * center - x;
        const double least = 0.3 * (end - x);
        if (to - x < least) {
            to = x + least;
            const double middle = (x + to) / 2;
            m = (end - y + k * x - middle * k) / (end - middle);
        }
        return {x, to, y, k, m};
    }
    double forward(double v) const {
        if (v >= top.x0) {
            return top.with_lines(v);
        }
        return v < bottom.x1 ? bottom.with_lines(v) : (v - pivot) * k + pivot;
    }
    double inverse(double v) const {
        if (v >= top.y0) {
            return top.inverse_with_lines(v);
        }
        return v < bottom.y1() ? bottom.inverse_with_lines(v) : (v - pivot) / k + pivot;
    }
};

struct Tone {
    const GradingTone& op;
    bool forward;
    Range range = range_of(op.style);

    /// The own value and the master's, which comes first in the inverse.
    template <class F>
    double both(const ToneZone& zone, std::size_t c, double v, F&& apply) const {
        for (const std::size_t i : {forward ? c : 3, forward ? 3 : c}) {
            v = zone.value[i] == 1 ? v : apply(zone.value[i], v);
        }
        return v;
    }
    double zone(int number, std::size_t c, double v) const {
        const auto moved_white = [&](double x) {
            const double value = op.highlights.value[3];
            return value == 1 ? x : highlights(op.highlights, value, true, x);
        };
        const auto moved_black = [&](double x) {
            const double value = op.shadows.value[3];
            return value == 1 ? x : shadows(op.shadows, value, true, x);
        };
        const double white = moved_white(op.whites.start);
        const double white_width = moved_white(op.whites.start + op.whites.width) - white;
        const double black = moved_black(op.blacks.start);
        const double black_width = black - moved_black(op.blacks.start - op.blacks.width);
        switch (number) {
        case 0:
            return both(op.midtones, c, v,
                        [&](double u, double x) { return midtones(op.midtones, u, range, forward, x); });
        case 1:
            return both(op.highlights, c, v,
                        [&](double u, double x) { return highlights(op.highlights, u, forward, x); });
        case 2:
            return both(op.whites, c, v,
                        [&](double u, double x) { return whites(white, white_width, u, forward, x); });
        case 3:
            return both(op.shadows, c, v,
                        [&](double u, double x) { return shadows(op.shadows, u, forward, x); });
        case 4:
            return both(op.blacks, c, v,
                        [&](double u, double x) { return blacks(black, black_width, u, forward, x); });
        default:
            return op.s_contrast == 1 ? v
                   : forward          ? Contrast(op.s_contrast, range).forward(v)
                                      : Contrast(op.s_contrast, range).inverse(v);
        }
    }
};

} // namespace

ExactPixel evaluate_tone_exactly(const GradingTone& op, const ExactPixel& in) {
    constexpr int ZONES = 6;
    const Tone tone{op, op.direction == Direction::Forward};
    const bool logarithmic = op.style == GradingStyle::Linear;
    ExactPixel out = in;
    for (std::size_t c = 0; c < 3; ++c) {
        double v = logarithmic ? lin_to_log_exactly(in[c]) : in[c];
        for (int i = 0; i < ZONES; ++i) {
            v = tone.zone(tone.forward ? i : ZONES - 1 - i, c, v);
        }
        v = logarithmic ? log_to_lin_exactly(v) : v;
        out[c] = v > 65504 ? 65504 : v; // NaN stays
    }
    return out;
}

} // namespace pixel_test
