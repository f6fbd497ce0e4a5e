#include "pixel/compile.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "pixel/spline.h"

namespace pixel {

namespace {

using Piece = Spline<double>::Piece;
using Pieces = std::vector<Piece>;

constexpr double LEAST_SLOPE = 0.01;

/// Ends of the range that midtones and s-contrast do not change, and the center of the contrast.
struct StyleRange {
    double top, contrast_top, bottom, pivot;
};

StyleRange range_of(GradingStyle style) {
    return style == GradingStyle::Linear ? StyleRange{7.5, 6.5, -5.5, 0} : StyleRange{1, 1, 0, 0.4};
}

/// A parabola that starts at (x, y) with one slope and has the other one `width` further on.
Piece parabola(double x, double y, double slope, double end_slope, double width) {
    return {x, (end_slope - slope) / (2 * width), slope, y};
}

double evaluate(const Pieces& pieces, double x) {
    std::size_t i = 0;
    while (i + 1 < pieces.size() && x >= pieces[i + 1].knot) {
        ++i;
    }
    const double t = x - pieces[i].knot;
    return (pieces[i].a * t + pieces[i].b) * t + pieces[i].c;
}

double solve(const Pieces& pieces, double y) {
    std::size_t i = 0;
    while (i + 1 < pieces.size() && y >= pieces[i + 1].c) {
        ++i;
    }
    const auto& [knot, a, b, start] = pieces[i];
    const double c = start - y;
    return knot - 2 * c / (std::sqrt(b * b - 4 * a * c) + b);
}

WideStep evaluated(const Pieces& pieces) {
    WideStep step{};
    step.evaluated = spline_table<double>({pieces}, true);
    return step;
}

WideStep solved(const Pieces& pieces) {
    WideStep step{};
    step.solved = spline_table<double>({pieces}, false);
    return step;
}

WideStep in_direction(const Pieces& pieces, bool forward) {
    return forward ? evaluated(pieces) : solved(pieces);
}

/// Lifts or lowers the middle of the range; the slopes at the ends stay 1.
Pieces midtones(const ToneZone& zone, double value, const StyleRange& range) {
    const double amount = 0.9 * (std::clamp(value, 0.01, 1.99) - 1);
    double x[6], y[6], m[6] = {1, 1 + 0.4 * amount, 1 + amount, 1 - amount, 1 - 0.4 * amount, 1};
    x[0] = range.bottom;
    x[5] = range.top;
    const double width = std::clamp(zone.width, 0.01, 0.95 * (x[5] - x[0]));
    const double center = std::clamp(zone.start, x[0] + 0.51 * width, x[5] - 0.51 * width);
    x[1] = center - width / 2;
    x[4] = x[1] + width;
    x[2] = x[1] + width / 4;
    x[3] = x[1] + 3 * width / 4;
    if (center <= (x[0] + x[5]) / 2) {
        const double area = (x[1] - x[0]) * (m[1] - m[0]) / 2 +
                            (x[2] - x[1]) * ((m[1] - m[0]) + (m[2] - m[1]) / 2) +
                            (center - x[2]) * (m[2] - m[0]) / 2;
        m[4] = (-(x[5] - x[4]) * m[5] / 2 + (x[4] - x[3]) * (m[3] / 2 - m[5]) +
                (x[3] - center) * (m[3] - m[5]) / 2 + area) /
               (-(x[5] - x[3]) / 2);
    } else {
        const double area = (x[5] - x[4]) * (m[4] - m[5]) / 2 +
                            (x[4] - x[3]) * ((m[4] - m[5]) + (m[3] - m[4]) / 2) +
                            (x[3] - center) * (m[3] - m[5]) / 2;
        m[1] = (-(x[1] - x[0]) * m[0] / 2 + (x[2] - x[1]) * (m[2] / 2 - m[0]) +
                (center - x[2]) * (m[2] - m[0]) / 2 + area) /
               (-(x[2] - x[0]) / 2);
    }
    y[0] = x[0];
    Pieces pieces{{x[0], 0, m[0], y[0]}};
    for (std::size_t i = 0; i < 5; ++i) {
        pieces.push_back(parabola(x[i], y[i], m[i], m[i + 1], x[i + 1] - x[i]));
        y[i + 1] = y[i] + (m[i] + m[i + 1]) * (x[i + 1] - x[i]) / 2;
    }
    pieces.push_back({x[5], 0, m[5], y[5]});
    return pieces;
}

/// Two parabolas between the lines of slope 1 on one side and of the given slope on the other.
struct Shoulder {
    Pieces pieces;
    bool inverted; ///< values above 1 take the inverse of the curve for 2 - value

    WideStep step(bool forward) const { return in_direction(pieces, forward != inverted); }
    double at(double x) const { return inverted ? solve(pieces, x) : evaluate(pieces, x); }
};

Shoulder shoulder(const ToneZone& zone, double value, bool is_shadow) {
    const double v = is_shadow ? value : 2 - value, pivot = zone.width;
    const double slope = std::max(LEAST_SLOPE, v < 1 ? v : 2 - v);
    const double x0 = is_shadow ? pivot : std::min(zone.start, pivot - 0.01);
    const double x2 = is_shadow ? std::max(zone.start, pivot + 0.01) : pivot;
    const double m0 = is_shadow ? slope : 1, m2 = is_shadow ? 1 : slope;
    const double x1 = (x0 + x2) / 2, left = x1 - x0, right = x2 - x1;
    const double y1 = ((2 * x0 + m0 * left) * right + (2 * x2 - m2 * right) * left) / (2 * (x2 - x0));
    return {{{x0, 0, m0, x0},
             {x0, ((y1 - x0) / left - m0) / left, m0, x0},
             {x1, ((y1 - x2) / right + m2) / right, 2 * (x2 - y1) / right - m2, y1},
             {x2, 0, m2, x2}},
            v > 1};
}

/// The parabola from x0 to x1 and the lines outside.
Pieces end_segment(double x0, double y0, double m0, double x1, double m1) {
    const double width = x1 - x0, y1 = y0 + (m0 + m1) / 2 * width;
    return {{x0, 0, m0, y0}, parabola(x0, y0, m0, m1, width), {x1, 0, m1, y1}};
}

/// Boosts invert the segment, stretched by the mean slope so that the ends stay; beyond the end of the whites
/// a parabola goes on from 0.99 of the way.
WideStep boosted_whites(double x0, double x1, double m1, bool forward) {
    const double m0 = 1, gain = (m0 + m1) / 2, width = x1 - x0;
    const double xd = x0 + 0.99 * width, md = 1 / (m0 + 0.99 * (m1 - m0));
    const double a = (1 / m1 - md) / (2 * (x1 - xd)), y1 = width / gain + x0;
    // Stretched by the gain: x0 + m0 t + gain curvature t^2, from x0 to where it reaches x1.
    const Pieces low{{x0, 0, m0, x0}, {x0, (m1 - m0) / (2 * width) * gain, m0, x0}, {y1, 0, m1, x1}};
    constexpr double INF = std::numeric_limits<double>::infinity();
    const Piece end{x1, a, 1 / m1, y1};
    WideStep step{};
    step.solved_below = forward;
    step.bound = forward ? x1 : y1;
    if (forward) {
        step.solved = spline_table<double>({low}, false);
        step.evaluated = spline_table<double>({{end, end, end}}, true);
    } else {
        step.evaluated = spline_table<double>({low}, true);
        step.solved = spline_table<double>({{{x1, 0, 1, -INF}, end, {x1, 0, 1, INF}}}, false);
    }
    return step;
}

WideStep whites(double start, double width, double value, bool forward) {
    const double x0 = start, x1 = start + width;
    if (value > 1) {
        return boosted_whites(x0, x1, std::max(LEAST_SLOPE, 2 - value), forward);
    }
    return in_direction(end_segment(x0, x0, 1, x1, std::max(LEAST_SLOPE, value)), forward);
}

WideStep blacks(double start, double width, double value, bool forward) {
    const double x1 = start, x0 = start - width, m1 = 1;
    const double m0 = std::max(LEAST_SLOPE, value < 1 ? value : 2 - value), mean = (m0 + m1) / 2;
    if (value > 1) {
        return in_direction(end_segment(x0, x1 - mean * width, m0, x1, m1), forward);
    }
    // As for boosted whites, about the end; it starts so that the value there is x0.
    const double knot = x1 - width / mean;
    const Pieces pieces{{knot, 0, m0, x0}, {knot, (m1 - m0) / (2 * width) * mean, m0, x0}, {x1, 0, m1, x1}};
    return in_direction(pieces, !forward);
}

/// A line through the pivot, and a parabola and a line of the reciprocal slope on either side.
Pieces s_contrast(double value, const StyleRange& range) {
    const double p = range.pivot;
    const double k =
        value > 1 ? 1 / (1.8125 - 0.8125 * std::min(value, 1.99)) : 0.28125 + 0.71875 * std::max(value, 0.01);
    const auto center = [](double x0, double y0, double m0, double x3, double y3, double m3) {
        return (y3 - y0 - m3 * x3 + m0 * x0) / (m0 - m3);
    };
    double end = range.contrast_top, y = p + (end - p) / 4, x = p + (y - p) / k, m = 1 / k;
    double from = x, to = 2 * center(x, y, k, end, end, m) - x, least = 0.3 * (end - x);
    if (to > end) {
        to = end;
        from = 2 * center(x, y, k, end, end, m) - end;
    } else if (to - from < least) {
        to = from + least;
        m = (end - y + k * x - (from + to) / 2 * k) / (end - (from + to) / 2);
    }
    const Piece top_curve = parabola(from, y, k, m, to - from);
    const Piece top_line{to, 0, m, y + (k + m) * (to - from) / 2};

    end = range.bottom;
    y = p - (p - end) / 4;
    x = p - (p - y) / k;
    m = 1 / k;
    to = x;
    from = 2 * center(end, end, m, x, y, k) - to;
    least = 0.3 * (x - end);
    if (from < end) {
        from = end;
        to = 2 * center(end, end, m, x, y, k) - end;
    } else if (to - from < least) {
        from = to - least;
        m = (y - end - k * x + (from + to) / 2 * k) / ((from + to) / 2 - end);
    }
    const double low = y - (m + k) * (to - from) / 2;
    return {{from, 0, m, low}, parabola(from, low, m, k, to - from), {to, 0, k, y}, top_curve, top_line};
}

/// The steps of one kind for a channel: its own value and the master's, in the inverse direction the other
/// way around. A value of exactly 1 changes nothing.
template <class F>
void add_zone(const ToneZone& zone, std::size_t c, bool forward, std::vector<WideStep>& steps, F&& make) {
    for (const std::size_t i : {forward ? c : 3, forward ? 3 : c}) {
        if (zone.value[i] != 1) {
            steps.push_back(make(zone.value[i]));
        }
    }
}

struct Zones {
    const GradingTone& op;
    std::size_t c;
    bool forward;
    StyleRange range;

    void add_midtones(std::vector<WideStep>& steps) const {
        add_zone(op.midtones, c, forward, steps,
                 [&](double v) { return in_direction(midtones(op.midtones, v, range), forward); });
    }
    void add_shoulder(bool is_shadow, std::vector<WideStep>& steps) const {
        const ToneZone& zone = is_shadow ? op.shadows : op.highlights;
        add_zone(zone, c, forward, steps,
                 [&](double v) { return shoulder(zone, v, is_shadow).step(forward); });
    }
    /// Where the master's shadows or highlights move a point to.
    double moved(bool is_shadow, double x) const {
        const ToneZone& zone = is_shadow ? op.shadows : op.highlights;
        return zone.value[3] == 1 ? x : shoulder(zone, zone.value[3], is_shadow).at(x);
    }
    void add_whites(std::vector<WideStep>& steps) const {
        const double start = moved(false, op.whites.start);
        const double width = moved(false, op.whites.start + op.whites.width) - start;
        add_zone(op.whites, c, forward, steps, [&](double v) { return whites(start, width, v, forward); });
    }
    void add_blacks(std::vector<WideStep>& steps) const {
        const double start = moved(true, op.blacks.start);
        const double width = start - moved(true, op.blacks.start - op.blacks.width);
        add_zone(op.blacks, c, forward, steps, [&](double v) { return blacks(start, width, v, forward); });
    }
    void add_contrast(std::vector<WideStep>& steps) const {
        if (op.s_contrast != 1) {
            steps.push_back(in_direction(s_contrast(op.s_contrast, range), forward));
        }
    }
};

std::vector<WideStep> steps_of(const GradingTone& op, std::size_t c, bool forward) {
    const Zones zones{op, c, forward, range_of(op.style)};
    std::vector<WideStep> steps;
    if (forward) {
        zones.add_midtones(steps);
        zones.add_shoulder(false, steps);
        zones.add_whites(steps);
        zones.add_shoulder(true, steps);
        zones.add_blacks(steps);
        zones.add_contrast(steps);
    } else {
        zones.add_contrast(steps);
        zones.add_blacks(steps);
        zones.add_shoulder(true, steps);
        zones.add_whites(steps);
        zones.add_shoulder(false, steps);
        zones.add_midtones(steps);
    }
    return steps;
}

} // namespace

Stage compile_tone(const GradingTone& op) {
    SequenceStage stage{};
    stage.logarithmic = op.style == GradingStyle::Linear;
    for (std::size_t c = 0; c < 3; ++c) {
        stage.steps[c] = steps_of(op, c, op.direction == Direction::Forward);
        stage.capped = stage.capped || !stage.steps[c].empty();
    }
    return stage;
}

} // namespace pixel
