#include "pixel/spline.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace pixel {

namespace {

template <class T>
constexpr T SAME = static_cast<T>(1e-6f); ///< slopes that differ by less are equal
template <class T>
constexpr T LEAST_END_SLOPE = static_cast<T>(0.01f);

template <class T>
class Fit {
public:
    explicit Fit(const std::vector<ControlPoint>& points) : count_(points.size()) {
        for (const ControlPoint& point : points) {
            x_.push_back(point.x);
            y_.push_back(point.y);
            slope_.push_back(point.slope);
        }
    }

    Spline<T> run() {
        if (std::all_of(slope_.begin(), slope_.end(), [](T s) { return s == 0; })) {
            estimate_slopes();
        }
        fit();
        if (mend_reversals()) {
            fit();
        }
        return with_ends();
    }

private:
    using Piece = typename Spline<T>::Piece;

    T secant(std::size_t i) const { return (y_[i + 1] - y_[i]) / (x_[i + 1] - x_[i]); }

    /// Means of the neighboring secants, weighted by the lengths of their segments. Segments in line count as
    /// one.
    void estimate_slopes() {
        std::vector<T> secants(count_ - 1), lengths(count_ - 1);
        for (std::size_t i = 0; i + 1 < count_; ++i) {
            const T dx = x_[i + 1] - x_[i], dy = y_[i + 1] - y_[i];
            secants[i] = dy / dx;
            lengths[i] = std::sqrt(dx * dx + dy * dy);
        }
        if (count_ == 2) {
            slope_ = {secants[0], secants[0]};
            return;
        }
        join_lengths(secants, lengths);
        for (std::size_t i = 1; i + 1 < count_; ++i) {
            slope_[i] =
                (lengths[i] * secants[i] + lengths[i - 1] * secants[i - 1]) / (lengths[i] + lengths[i - 1]);
        }
        const T half = static_cast<T>(0.5);
        const std::size_t last = count_ - 1;
        slope_[last] = std::max(LEAST_END_SLOPE<T>, (3 * secants[last - 1] - slope_[last - 1]) * half);
        slope_[0] = std::max(LEAST_END_SLOPE<T>, (3 * secants[0] - slope_[1]) * half);
    }

    static void join_lengths(const std::vector<T>& secants, std::vector<T>& lengths) {
        for (std::size_t from = 0; from < secants.size();) {
            std::size_t to = from + 1;
            T sum = lengths[from];
            while (to < secants.size() && std::abs(secants[to] - secants[to - 1]) < SAME<T>) {
                sum += lengths[to++];
            }
            std::fill(lengths.begin() + static_cast<std::ptrdiff_t>(from),
                      lengths.begin() + static_cast<std::ptrdiff_t>(to), sum);
            from = to;
        }
    }

    void fit() {
        pieces_.clear();
        middle_.clear();
        for (std::size_t i = 0; i + 1 < count_; ++i) {
            fit_segment(i);
        }
    }

    /// One parabola where it meets both slopes, else two that meet at a knot between the points.
    void fit_segment(std::size_t i) {
        const T x0 = x_[i], x1 = x_[i + 1], y0 = y_[i], s0 = slope_[i], s1 = slope_[i + 1];
        const T dx = x1 - x0, half = static_cast<T>(0.5), s = secant(i);
        if (std::abs(s0 + s1 - 2 * s) < SAME<T>) {
            pieces_.push_back({x0, half * (s1 - s0) / dx, s0, y0});
            middle_.push_back(x1);
            return;
        }
        const T a = s0 - s, b = s1 - s;
        const T q = a * b >= 0                  ? (x0 + x1) * half
                    : std::abs(a) > std::abs(b) ? x1 + a * dx / (s1 - s0)
                                                : x0 + b * dx / (s1 - s0);
        const T m = (2 * s - s1) + (s1 - s0) * (q - x0) / dx;
        const T eta = (m - s0) / (q - x0);
        pieces_.push_back({x0, half * eta, s0, y0});
        pieces_.push_back(
            {q, half * (s1 - m) / (x1 - q), m, y0 + s0 * (q - x0) + half * eta * (q - x0) * (q - x0)});
        middle_.push_back(q);
    }

    /// Lowers the slopes of segments that would run backwards; true when there were any.
    bool mend_reversals() {
        bool changed = false;
        for (std::size_t i = 0; i + 1 < count_; ++i) {
            const T x0 = x_[i], x1 = x_[i + 1], q = middle_[i], dx = x1 - x0, dy = y_[i + 1] - y_[i];
            T &s0 = slope_[i], &s1 = slope_[i + 1];
            if ((2 * dy - (q - x0) * s0 - (x1 - q) * s1) / dx < 0) {
                const T s = dy / dx, blend = ((q - x0) * s0 + (x1 - q) * s1) / dx;
                const T aim = std::min(static_cast<T>(0.01f) * static_cast<T>(0.5) * (s0 + s1), s);
                const T factor = (2 * s - aim) / blend;
                s0 *= factor;
                s1 *= factor;
                changed = true;
            }
        }
        return changed;
    }

    Spline<T> with_ends() const {
        const Piece &first = pieces_.front(), &last = pieces_.back();
        const T end = x_.back(), t = end - last.knot;
        Spline<T> out;
        out.pieces.push_back({first.knot, 0, first.b, first.c});
        out.pieces.insert(out.pieces.end(), pieces_.begin(), pieces_.end());
        out.pieces.push_back({end, 0, 2 * last.a * t + last.b, (last.a * t + last.b) * t + last.c});
        return out;
    }

    std::size_t count_;
    std::vector<T> x_, y_, slope_;
    std::vector<Piece> pieces_;
    std::vector<T> middle_; ///< the knot within each segment, or where there is none its end
};

void check_points(const std::vector<ControlPoint>& points) {
    const auto falls = [](const ControlPoint& a, const ControlPoint& b) { return !(a.x <= b.x); };
    if (points.size() < 2 || std::adjacent_find(points.begin(), points.end(), falls) != points.end()) {
        throw std::invalid_argument("RGB curve: there are at least 2 control points, in the order of x");
    }
}

} // namespace

template <class T>
Spline<T> fit_spline(const std::vector<ControlPoint>& points) {
    check_points(points);
    const auto on_diagonal = [](const ControlPoint& p) { return p.x == p.y && p.slope == 0; };
    return std::all_of(points.begin(), points.end(), on_diagonal) ? Spline<T>{} : Fit<T>(points).run();
}

template <class T>
SplineTable<T> spline_table(const Spline<T>& spline, bool forward) {
    SplineTable<T> table{{}, spline.pieces, {}};
    for (const auto& piece : spline.pieces) {
        if (const std::size_t i = table.start.size(); i < SplineTable<T>::FEW) {
            table.few[0][i] = piece.knot;
            table.few[1][i] = piece.a;
            table.few[2][i] = piece.b;
            table.few[3][i] = piece.c;
        }
        table.start.push_back(forward ? piece.knot : piece.c);
    }
    // Where the values fall, the first piece whose successor starts above a value is in charge of it.
    for (std::size_t i = 3; i + 1 < table.start.size(); ++i) {
        table.start[i] = std::max(table.start[i - 1], table.start[i]);
    }
    table.few[4].fill(std::numeric_limits<T>::quiet_NaN());
    const std::size_t count = table.start.size(), end = forward || count == 0 ? count : count - 1;
    for (std::size_t i = 0; i < std::min(end, SplineTable<T>::FEW); ++i) {
        table.few[4][i] = table.start[i];
    }
    return table;
}

template SplineTable<float> spline_table<float>(const Spline<float>& spline, bool forward);
template SplineTable<double> spline_table<double>(const Spline<double>& spline, bool forward);
template Spline<float> fit_spline<float>(const std::vector<ControlPoint>& points);
template Spline<double> fit_spline<double>(const std::vector<ControlPoint>& points);

} // namespace pixel
