#include "pixel/hue_spline.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace pixel {

namespace {

bool is_periodic(HueCurveKind kind) {
    return kind == HueCurveKind::HueHue || kind == HueCurveKind::HueSaturation ||
           kind == HueCurveKind::HueLuminance || kind == HueCurveKind::HueShift;
}

/// Curves of a quantity over the same one rise; the others are gains or shifts.
bool is_diagonal(HueCurveKind kind) {
    return kind == HueCurveKind::HueHue || kind == HueCurveKind::SaturationSaturation ||
           kind == HueCurveKind::LuminanceLuminance;
}

class HueFit {
public:
    HueFit(HueCurveKind kind, const std::vector<ControlPoint>& points) : kind_(kind), points_(points) {}

    Spline<float> run() {
        if (is_periodic(kind_)) {
            wrap();
        }
        sort_and_space();
        const bool given =
            std::any_of(points_.begin(), points_.end(), [](const ControlPoint& p) { return p.slope != 0; });
        if (is_periodic(kind_)) {
            continue_beyond_ends();
        }
        if (!given) {
            estimate_slopes();
        }
        for (std::size_t i = 0; i + 1 < points_.size(); ++i) {
            fit_segment(points_[i], points_[i + 1]);
        }
        return with_ends();
    }

private:
    float turn_of_y() const { return kind_ == HueCurveKind::HueHue ? 1.0f : 0.0f; }

    void wrap() {
        for (ControlPoint& p : points_) {
            const float turn = p.x < 0 ? 1.0f : p.x >= 1 ? -1.0f : 0.0f;
            p.x += turn;
            p.y += turn * turn_of_y();
        }
    }

    void sort_and_space() {
        std::stable_sort(points_.begin(), points_.end(),
                         [](const ControlPoint& a, const ControlPoint& b) { return a.x < b.x; });
        constexpr float LEAST = 0.002f;
        const float dx = (points_.back().x - points_.front().x) * LEAST,
                    dy = (points_.back().y - points_.front().y) * LEAST;
        for (std::size_t i = 1; i < points_.size(); ++i) {
            points_[i].x = std::max(points_[i].x, points_[i - 1].x + dx);
            if (is_diagonal(kind_)) {
                points_[i].y = std::max(points_[i].y, points_[i - 1].y + dy);
            }
        }
    }

    /// The slope beyond the upper end is that of the last point, as in the reference renderer.
    void continue_beyond_ends() {
        ControlPoint before = points_.back(), after = points_.front();
        before.x -= 1;
        before.y -= turn_of_y();
        after.x += 1;
        after.y += turn_of_y();
        after.slope = before.slope;
        points_.insert(points_.begin(), before);
        points_.push_back(after);
    }

    float secant(std::size_t i) const {
        return (points_[i + 1].y - points_[i].y) / (points_[i + 1].x - points_[i].x);
    }

    void estimate_slopes() {
        const std::size_t count = points_.size();
        if (count == 2) {
            points_[0].slope = points_[1].slope = secant(0);
            return;
        }
        if (is_diagonal(kind_) && kind_ != HueCurveKind::HueHue) {
            estimate_by_lengths();
        } else {
            estimate_by_secants();
        }
        limit_slopes();
        if (is_periodic(kind_)) {
            points_[0].slope = points_[count - 2].slope;
            points_[count - 1].slope = points_[1].slope;
        }
    }

    /// Harmonic means of the neighboring secants, level at extremes.
    void estimate_by_secants() {
        const std::size_t last = points_.size() - 1;
        for (std::size_t i = 1; i < last; ++i) {
            const float below = secant(i - 1), above = secant(i), product = above * below;
            float sum = above + below;
            sum = std::abs(sum) < 1e-3f ? (sum < 0 ? -1e-3f : 1e-3f) : sum;
            points_[i].slope = product <= 0 ? 0.0f : 2.0f * product / sum;
        }
        points_[last].slope = 0.5f * (3.0f * secant(last - 1) - points_[last - 1].slope);
        points_[0].slope = 0.5f * (3.0f * secant(0) - points_[1].slope);
    }

    /// As those of the RGB curves.
    void estimate_by_lengths() {
        const std::size_t last = points_.size() - 1;
        std::vector<float> lengths;
        for (std::size_t i = 0; i < last; ++i) {
            const float dx = points_[i + 1].x - points_[i].x, dy = points_[i + 1].y - points_[i].y;
            lengths.push_back(std::sqrt(dx * dx + dy * dy));
        }
        for (std::size_t from = 0; from < last;) {
            std::size_t to = from + 1;
            float sum = lengths[from];
            while (to < last && std::abs(secant(to) - secant(to - 1)) < 1e-6f) {
                sum += lengths[to++];
            }
            for (; from < to; ++from) {
                lengths[from] = sum;
            }
        }
        for (std::size_t i = 1; i < last; ++i) {
            points_[i].slope =
                (lengths[i] * secant(i) + lengths[i - 1] * secant(i - 1)) / (lengths[i] + lengths[i - 1]);
        }
        points_[last].slope = std::max(0.01f, 0.5f * (3.0f * secant(last - 1) - points_[last - 1].slope));
        points_[0].slope = std::max(0.01f, 0.5f * (3.0f * secant(0) - points_[1].slope));
    }

    /// Lowers slopes that are steep for their segments.
    void limit_slopes() {
        for (std::size_t i = 0; i + 1 < points_.size(); ++i) {
            float &s0 = points_[i].slope, &s1 = points_[i + 1].slope;
            const float k = std::abs(s0) > std::abs(s1) ? 0.8f : 0.2f;
            const float v = s0 + k * (s1 - s0);
            const float ratio = v != 0 ? 1.5f * secant(i) / v : 1.0f;
            if (ratio < 1) {
                s0 *= ratio;
                s1 *= ratio;
            }
        }
    }

    /// Where the two parabolas of a segment meet; the slopes are those of a rising segment.
    static float middle_knot(float x0, float x1, float s0, float s1, float s) {
        const float dx = x1 - x0, mid = x0 + 0.5f * dx;
        const float low = std::min(s0, s1), high = std::max(s0, s1), range = high - low;
        const float steep = low + 0.9f * range, flat = low + 0.1f * range;
        float top = x0 + 0.2f * dx, bottom = x1 - 0.2f * dx;
        if (s0 > s1) {
            std::swap(top, bottom);
        }
        const float spread = std::min(std::max((range / std::max(0.01f, high) - 0.05f) / 0.7f, 0.0f), 1.0f);
        top = mid + spread * (top - mid);
        bottom = mid + spread * (bottom - mid);
        if (s >= 4.0f * high) {
            return mid;
        }
        if (s > 1.1f * high) {
            return top + (s - 1.1f * high) / (2.9f * high) * (mid - top);
        }
        if (s >= steep) {
            return top;
        }
        if (s > flat && steep != flat) {
            return bottom + (s - flat) / (steep - flat) * (top - bottom);
        }
        return bottom;
    }

    void fit_segment(const ControlPoint& from, const ControlPoint& to) {
        const float x0 = from.x, x1 = to.x, y0 = from.y, s0 = from.slope, s1 = to.slope;
        const float dx = x1 - x0, s = (to.y - y0) / dx;
        if (std::abs(s0 + s1 - 2.0f * s) <= 1e-5f) {
            pieces_.push_back({x0, 0.5f * (s1 - s0) / dx, s0, y0});
            return;
        }
        const float q = s < 0 ? middle_knot(x0, x1, -s0, -s1, -s) : middle_knot(x0, x1, s0, s1, s);
        const float m = (2.0f * s - s1) + (s1 - s0) * (q - x0) / dx;
        const float eta = (m - s0) / (q - x0);
        pieces_.push_back({x0, 0.5f * eta, s0, y0});
        pieces_.push_back(
            {q, 0.5f * (s1 - m) / (x1 - q), m, y0 + s0 * (q - x0) + 0.5f * eta * (q - x0) * (q - x0)});
    }

    Spline<float> with_ends() const {
        const Spline<float>::Piece &first = pieces_.front(), &last = pieces_.back();
        const float end = points_.back().x, t = end - last.knot;
        Spline<float> out;
        out.pieces.push_back({first.knot, 0, first.b, first.c});
        out.pieces.insert(out.pieces.end(), pieces_.begin(), pieces_.end());
        out.pieces.push_back({end, 0, 2 * last.a * t + last.b, (last.a * t + last.b) * t + last.c});
        return out;
    }

    HueCurveKind kind_;
    std::vector<ControlPoint> points_;
    std::vector<Spline<float>::Piece> pieces_;
};

} // namespace

bool is_neutral(HueCurveKind kind, const std::vector<ControlPoint>& points) {
    const float level = kind == HueCurveKind::HueShift ? 0.0f : 1.0f;
    return std::all_of(points.begin(), points.end(), [&](const ControlPoint& p) {
        return p.y == (is_diagonal(kind) ? p.x : level) && p.slope == 0;
    });
}

Spline<float> fit_hue_spline(HueCurveKind kind, const std::vector<ControlPoint>& points) {
    if (points.size() < 2) {
        throw std::invalid_argument("hue curve: there are at least 2 control points");
    }
    return is_neutral(kind, points) ? Spline<float>{} : HueFit(kind, points).run();
}

} // namespace pixel
