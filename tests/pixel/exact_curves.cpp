#include "exact_curves.h"

#include <algorithm>
#include <cmath>

namespace pixel_test {

namespace {

using Points = std::vector<pixel::ControlPoint>;

/// A quadratic Bezier-like part of a curve: from (x0, y0), slopes at both ends.
struct Part {
    double x0, x1, y0, slope0, slope1;

    double at(double x) const {
        const double t = x - x0;
        return y0 + slope0 * t + (slope1 - slope0) / (x1 - x0) / 2 * t * t;
    }
    double y1() const { return at(x1); }
    double where(double y) const {
        const double a = (slope1 - slope0) / (x1 - x0) / 2, c = y0 - y;
        return x0 - 2 * c / (std::sqrt(slope0 * slope0 - 4 * a * c) + slope0);
    }
};

struct Curve {
    std::vector<Part> parts;

    double forward(double x) const {
        const Part &first = parts.front(), &last = parts.back();
        if (x <= first.x0) {
            return first.y0 + first.slope0 * (x - first.x0);
        }
        if (x >= last.x1) {
            return last.y1() + last.slope1 * (x - last.x1);
        }
        const auto after = [x](const Part& part) { return x < part.x1; };
        const auto part = std::find_if(parts.begin(), parts.end(), after);
        return (part == parts.end() ? last : *part).at(x);
    }
    double inverse(double y) const {
        const auto line = [y](double x0, double y0, double slope) {
            return std::fabs(slope) < 1e-5 ? x0 : x0 + (y - y0) / slope;
        };
        const Part &first = parts.front(), &last = parts.back();
        if (y <= first.y0) {
            return line(first.x0, first.y0, first.slope0);
        }
        if (y >= last.y1()) {
            return line(last.x1, last.y1(), last.slope1);
        }
        for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
            if (y < parts[i + 1].y0) {
                return parts[i].where(y);
            }
        }
        return last.where(y);
    }
};

double secant(const Points& p, std::size_t i) {
    return (static_cast<double>(p[i + 1].y) - static_cast<double>(p[i].y)) /
           (static_cast<double>(p[i + 1].x) - static_cast<double>(p[i].x));
}

double length(const Points& p, std::size_t i) {
    return std::hypot(static_cast<double>(p[i + 1].x) - static_cast<double>(p[i].x),
                      static_cast<double>(p[i + 1].y) - static_cast<double>(p[i].y));
}

/// The length of all segments that are in line with segment i.
double joint_length(const Points& p, std::size_t i) {
    const auto in_line = [&](std::size_t k) { return std::fabs(secant(p, k + 1) - secant(p, k)) < 1e-6; };
    double sum = length(p, i);
    for (std::size_t k = i; k + 2 < p.size() && in_line(k); ++k) {
        sum += length(p, k + 1);
    }
    for (std::size_t k = i; k > 0 && in_line(k - 1); --k) {
        sum += length(p, k - 1);
    }
    return sum;
}

std::vector<double> slopes_of(const Points& p) {
    std::vector<double> slopes;
    for (const auto& point : p) {
        slopes.push_back(static_cast<double>(point.slope));
    }
    if (std::any_of(slopes.begin(), slopes.end(), [](double s) { return s != 0; })) {
        return slopes;
    }
    const std::size_t n = p.size();
    if (n == 2) {
        return {secant(p, 0), secant(p, 0)};
    }
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const double before = joint_length(p, i - 1), after = joint_length(p, i);
        slopes[i] = (after * secant(p, i) + before * secant(p, i - 1)) / (after + before);
    }
    slopes[0] = std::max(0.01, 1.5 * secant(p, 0) - slopes[1] / 2);
    slopes[n - 1] = std::max(0.01, 1.5 * secant(p, n - 2) - slopes[n - 2] / 2);
    return slopes;
}

/// Where the two parabolas of a segment meet, or its end where one is enough.
double middle_of(double x0, double x1, double s0, double s1, double s) {
    if (std::fabs(s0 + s1 - 2 * s) < 1e-6) {
        return x1;
    }
    const double a = s0 - s, b = s1 - s, dx = x1 - x0;
    if (a * b >= 0) {
        return (x0 + x1) / 2;
    }
    return std::fabs(a) > std::fabs(b) ? x1 + a * dx / (s1 - s0) : x0 + b * dx / (s1 - s0);
}

Curve curve_of(const Points& p, const std::vector<double>& slopes) {
    Curve curve;
    for (std::size_t i = 0; i + 1 < p.size(); ++i) {
        const double x0 = static_cast<double>(p[i].x), x1 = static_cast<double>(p[i + 1].x),
                     y0 = static_cast<double>(p[i].y);
        const double s0 = slopes[i], s1 = slopes[i + 1], s = secant(p, i);
        const double q = middle_of(x0, x1, s0, s1, s);
        if (q == x1) {
            curve.parts.push_back({x0, x1, y0, s0, s1});
            continue;
        }
        const double m = 2 * s - s1 + (s1 - s0) * (q - x0) / (x1 - x0);
        curve.parts.push_back({x0, q, y0, s0, m});
        curve.parts.push_back({q, x1, curve.parts.back().y1(), m, s1});
    }
    return curve;
}

/// Segments that would run backwards between their points get flatter slopes, from left to right.
std::vector<double> without_reversals(const Points& p, std::vector<double> slopes) {
    const std::vector<double> first = slopes;
    for (std::size_t i = 0; i + 1 < p.size(); ++i) {
        const double x0 = static_cast<double>(p[i].x), x1 = static_cast<double>(p[i + 1].x), s = secant(p, i);
        const double q = middle_of(x0, x1, first[i], first[i + 1], s);
        const double blend = ((q - x0) * slopes[i] + (x1 - q) * slopes[i + 1]) / (x1 - x0);
        if (2 * s - blend < 0) {
            const double aim = std::min(0.005 * (slopes[i] + slopes[i + 1]), s);
            const double factor = (2 * s - aim) / blend;
            slopes[i] *= factor;
            slopes[i + 1] *= factor;
        }
    }
    return slopes;
}

bool is_identity(const Points& points) {
    return std::all_of(points.begin(), points.end(),
                       [](const pixel::ControlPoint& p) { return p.x == p.y && p.slope == 0; });
}

double evaluate(const Points& points, double v, bool forward) {
    if (is_identity(points)) {
        return v;
    }
    const Curve curve = curve_of(points, without_reversals(points, slopes_of(points)));
    return forward ? curve.forward(v) : curve.inverse(v);
}

constexpr double SHIFT = -0.000157849851665374, GAIN = 363.034608563;

} // namespace

double lin_to_log_exactly(double x) {
    return x < 0.0041318374739483946 ? GAIN * x - 7 : std::log2((x + SHIFT) / (0.18 + SHIFT));
}

double log_to_lin_exactly(double y) {
    return y < -5.5 ? (y + 7) / GAIN : std::exp2(y) * (0.18 + SHIFT) - SHIFT;
}

ExactPixel evaluate_curves_exactly(const pixel::RgbCurve& curves, const ExactPixel& in) {
    const bool forward = curves.direction == pixel::Direction::Forward;
    const bool logarithmic = curves.style == pixel::GradingStyle::Linear && !curves.bypass_lin_to_log;
    ExactPixel out = in;
    for (std::size_t c = 0; c < 3; ++c) {
        double v = logarithmic ? lin_to_log_exactly(in[c]) : in[c];
        v = evaluate(curves.curve[forward ? c : 3], v, forward);
        v = evaluate(curves.curve[forward ? 3 : c], v, forward);
        out[c] = logarithmic ? log_to_lin_exactly(v) : v;
    }
    return out;
}

} // namespace pixel_test
