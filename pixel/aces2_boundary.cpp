#include "pixel/aces2_boundary.h"

#include <algorithm>
#include <cmath>

namespace pixel {

namespace {

constexpr float SMOOTH_WIDTH = 0.12f;

float lerp(float a, float b, float t) {
    return (b - a) * t + a;
}

Color3 lerp(const Color3& a, const Color3& b, float t) {
    return {lerp(a[0], b[0], t), lerp(a[1], b[1], t), lerp(a[2], b[2], t)};
}

template <class T>
void repeat_ends(std::vector<T>& entries) {
    entries[0] = entries[360];
    entries[361] = entries[1];
    entries[362] = entries[2];
}

/// Walks along the edges between the corners, hue by hue.
class CuspSearch {
public:
    CuspSearch(const AppearanceModel& model, const AppearanceMatrices& matrices, const CubeCorners& corners)
        : model_(model), matrices_(matrices), corners_(corners) {}

    /// J and M; `hue` rises from call to call.
    Color3 find(float hue) {
        std::size_t upper = 1;
        while (upper + 1 < corners_.jmh.size() && !(corners_.jmh[upper][2] > hue)) {
            ++upper;
        }
        const std::size_t lower = upper - 1;
        if (corners_.jmh[lower][2] == hue) {
            return corners_.jmh[lower];
        }
        const float from = upper == edge_ ? position_ : 0.0f;
        edge_ = upper;
        position_ = search(lower, upper, hue, from);
        return sample(lower, upper, position_);
    }

private:
    Color3 sample(std::size_t lower, std::size_t upper, float t) const {
        return rgb_to_jmh(model_, matrices_, lerp(corners_.rgb[lower], corners_.rgb[upper], t));
    }

    float search(std::size_t lower, std::size_t upper, float wanted, float low) const {
        float high = 1;
        while (high - low > 1e-7f) {
            const float middle = (low + high) / 2.0f;
            const float hue = sample(lower, upper, middle)[2];
            const bool is_high =
                hue < corners_.jmh[lower][2] || (hue < corners_.jmh[upper][2] && hue > wanted);
            (is_high ? high : low) = middle;
        }
        return (low + high) / 2.0f;
    }

    const AppearanceModel& model_;
    const AppearanceMatrices& matrices_;
    const CubeCorners& corners_;
    std::size_t edge_ = 0;
    float position_ = 0;
};

/// A point on the boundary, by the line through it along which colors are compressed.
struct BoundaryTest {
    float j_at_axis, slope, j_at_cusp;
};

/// The boundary at one hue.
class Boundary {
public:
    Boundary(const Aces2& aces, float peak, float hue, const GamutCusp& cusp)
        : aces_(aces), max_j_(aces.factors.max_j), limit_(peak / 100.0f), hue_(hue), cusp_(cusp),
          threshold_(lerp(cusp.j, max_j_, 0.3f)),
          focus_(lerp(cusp.j, aces.factors.mid_j, std::min(1.0f, 1.3f - cusp.j / max_j_))) {
        constexpr float POSITIONS[] = {0.01f, 0.1f, 0.5f, 0.8f, 0.99f};
        for (std::size_t i = 0; i < tests_.size(); ++i) {
            const float j = lerp(cusp.j, max_j_, POSITIONS[i]), gain = gain_at(j);
            const float at_axis = solve(j, cusp.m, gain);
            tests_[i] = {at_axis, slope_at(at_axis, gain), solve(cusp.j, cusp.m, gain)};
        }
    }

    float fitted_root() const {
        constexpr float STEP = 0.4f;
        float low = 0, high = STEP;
        while (high < 5.0f && !fits(high)) {
            low = high;
            high += STEP;
        }
        while (high - low > 1e-5f) {
            const float middle = (high + low) / 2.0f;
            (fits(middle) ? high : low) = middle;
        }
        return 1.0f / high;
    }

private:
    float gain_at(float j) const {
        const float gain = aces_.factors.focus_gain;
        if (!(j > threshold_)) {
            return gain;
        }
        const float d = decades_of((max_j_ - threshold_) / std::max(0.0001f, max_j_ - j));
        return gain * (1.0f + d * d);
    }

    /// J where the line through a point meets the axis.
    float solve(float j, float m, float gain) const {
        const float scaled = m / gain, a = scaled / focus_;
        if (j < focus_) {
            const float b = 1.0f - scaled, c = -j;
            return -2.0f * c / (b + std::sqrt(b * b - 4.0f * a * c));
        }
        const float b = -(1.0f + scaled + max_j_ * a), c = max_j_ * scaled + j;
        return -2.0f * c / (b - std::sqrt(b * b - 4.0f * a * c));
    }

    float slope_at(float j, float gain) const {
        return (j < focus_ ? j : max_j_ - j) * (j - focus_) / (focus_ * gain);
    }

    static float meet(float j, float slope, float root, float max_j, float max_m, float reference) {
        const float bent = reference * std::pow(j / reference, root);
        return bent * max_m / (max_j - slope * max_m);
    }

    /// M of the boundary on a line.
    float boundary_m(const BoundaryTest& test, float upper_root) const {
        const float lower =
            meet(test.j_at_axis, test.slope, aces_.factors.lower_root, cusp_.j, cusp_.m, test.j_at_cusp);
        const float upper = meet(max_j_ - test.j_at_axis, -test.slope, upper_root, max_j_ - cusp_.j, cusp_.m,
                                 max_j_ - test.j_at_cusp);
        const float width = SMOOTH_WIDTH * cusp_.m;
        const float e = std::max(width - std::abs(lower - upper), 0.0f) / width;
        return std::min(lower, upper) - e * e * e * width * (1.0f / 6.0f);
    }

    bool fits(float exponent) const {
        return std::all_of(tests_.begin(), tests_.end(), [&](const BoundaryTest& test) {
            const float m = boundary_m(test, 1.0f / exponent), j = test.j_at_axis + test.slope * m;
            const Color3 rgb = jmh_to_rgb(aces_.model, aces_.display, {j, m, hue_});
            return rgb[0] > limit_ || rgb[1] > limit_ || rgb[2] > limit_;
        });
    }

    const Aces2& aces_;
    float max_j_, limit_, hue_;
    GamutCusp cusp_;
    float threshold_, focus_;
    std::array<BoundaryTest, 5> tests_;
};

} // namespace

std::vector<GamutCusp> find_cusps(const AppearanceModel& model, const AppearanceMatrices& matrices,
                                  const CubeCorners& corners, const std::vector<float>& hues) {
    constexpr float WIDENED = 1.0f + 0.27f * SMOOTH_WIDTH;
    std::vector<GamutCusp> cusps(HUE_ENTRIES);
    CuspSearch search(model, matrices, corners);
    for (std::size_t i = 1; i <= 360; ++i) {
        const Color3 found = search.find(hues[i]);
        cusps[i] = {found[0], found[1] * WIDENED, 0};
    }
    repeat_ends(cusps);
    return cusps;
}

void fit_upper_roots(const Aces2& aces, float peak, const std::vector<float>& hues,
                     std::vector<GamutCusp>& cusps) {
    for (std::size_t i = 1; i <= 360; ++i) {
        cusps[i].upper_root = Boundary(aces, peak, hues[i], cusps[i]).fitted_root();
    }
    repeat_ends(cusps);
}

} // namespace pixel
