#include "pixel/kernels.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_hue_curve.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/hsy-inl.h"
#include "pixel/lin_log-inl.h"
#include "pixel/spline_plane-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

using HueTag = hn::ScalableTag<float>;

// The logarithm of the linear style, every step rounded to floats.

template <class D>
HWY_INLINE hn::Vec<D> stops_of(D d, hn::Vec<D> linear) {
    const auto shift = hn::Set(d, static_cast<float>(LIN_SHIFT));
    const auto gray = hn::Set(d, 0.18f + static_cast<float>(LIN_SHIFT));
    const auto line = linear * hn::Set(d, static_cast<float>(LIN_GAIN)) - hn::Set(d, 7.0f);
    const auto low = hn::Lt(linear, hn::Set(d, static_cast<float>(LIN_BREAK)));
    const auto stops = log2_of(d, hn::IfThenElse(low, gray, linear + shift) / gray);
    return hn::IfThenElse(low, line, hn::IfThenElse(hn::IsNaN(linear), linear, stops));
}

template <class D>
HWY_INLINE hn::Vec<D> linear_of(D d, hn::Vec<D> stops) {
    const auto shift = hn::Set(d, static_cast<float>(LIN_SHIFT));
    const auto gray = hn::Set(d, 0.18f + static_cast<float>(LIN_SHIFT));
    const auto line = (stops + hn::Set(d, 7.0f)) / hn::Set(d, static_cast<float>(LIN_GAIN));
    const auto low = hn::Lt(stops, hn::Set(d, static_cast<float>(LOG_BREAK)));
    return hn::IfThenElse(low, line, exp2_of(d, stops) * gray - shift);
}

/// One block's curves. Hue, saturation and luma are in its planes; the rest is what the steps give to each
/// other.
class HueCurveRun {
public:
    HueCurveRun(const HueCurveStage& stage, Block& block) : stage_(stage), block_(block) {}

    void run_forward() {
        to_hsy();
        to_logarithm();
        look_up(HueCurveKind::HueSaturation, hue(), saturation_gain_);
        look_up(HueCurveKind::HueLuminance, hue(), luma_gain_);
        spline_plane<true>(curve(HueCurveKind::HueHue), hue(), block_);
        spline_plane<true>(curve(HueCurveKind::SaturationSaturation), saturation(), block_);
        raise_to_zero(saturation());
        look_up(HueCurveKind::LuminanceSaturation, luma(), other_gain_);
        multiply_saturation();
        look_up(HueCurveKind::SaturationLuminance, saturation(), other_gain_);
        spline_plane<true>(curve(HueCurveKind::LuminanceLuminance), luma(), block_);
        from_logarithm();
        change_luma<true>();
        shift_hue();
        from_hsy();
    }

    void run_inverse() {
        to_hsy();
        unwind(HueCurveKind::HueShift);
        unwind(HueCurveKind::HueHue);
        wrap_hue();
        look_up(HueCurveKind::HueSaturation, hue(), saturation_gain_);
        look_up(HueCurveKind::HueLuminance, hue(), luma_gain_);
        raise_to_zero(saturation());
        look_up(HueCurveKind::SaturationLuminance, saturation(), other_gain_);
        change_luma<false>();
        to_logarithm();
        spline_plane<false>(curve(HueCurveKind::LuminanceLuminance), luma(), block_);
        look_up(HueCurveKind::LuminanceSaturation, luma(), other_gain_);
        from_logarithm();
        divide_saturation();
        spline_plane<false>(curve(HueCurveKind::SaturationSaturation), saturation(), block_);
        raise_to_zero(saturation());
        from_hsy();
    }

private:
    float* hue() { return block_.plane[0]; }
    float* saturation() { return block_.plane[1]; }
    float* luma() { return block_.plane[2]; }
    const SplineTable<float>& curve(HueCurveKind kind) const {
        return stage_.curve[static_cast<std::size_t>(kind)];
    }
    bool is_linear() const { return stage_.style == GradingStyle::Linear; }

    template <class F>
    HWY_INLINE void map(float* plane, F&& f) {
        const HueTag d;
        for_each_vector(block_, [&](std::size_t i)
                                    HWY_ATTR { hn::Store(f(hn::Load(d, plane + i), i), d, plane + i); });
    }

    void to_hsy() {
        if (!stage_.converts_to_hsy) {
            return;
        }
        map_colors(block_, [&](auto d, auto& r, auto& g, auto& b) HWY_ATTR {
            if (stage_.style == GradingStyle::Log) {
                rgb_to_hsy<GradingStyle::Log>(d, r, g, b);
            } else if (stage_.style == GradingStyle::Video) {
                rgb_to_hsy<GradingStyle::Video>(d, r, g, b);
            } else {
                rgb_to_hsy<GradingStyle::Linear>(d, r, g, b);
            }
        });
    }

    void from_hsy() {
        if (!stage_.converts_to_hsy) {
            return;
        }
        map_colors(block_, [&](auto d, auto& h, auto& s, auto& y) HWY_ATTR {
            if (stage_.style == GradingStyle::Log) {
                hsy_to_rgb<GradingStyle::Log>(d, h, s, y);
            } else if (stage_.style == GradingStyle::Video) {
                hsy_to_rgb<GradingStyle::Video>(d, h, s, y);
            } else {
                hsy_to_rgb<GradingStyle::Linear>(d, h, s, y);
            }
        });
    }

    void to_logarithm() {
        if (is_linear()) {
            map(luma(), [](auto v, std::size_t) HWY_ATTR { return stops_of(HueTag(), v); });
        }
    }

    void from_logarithm() {
        if (is_linear()) {
            map(luma(), [](auto v, std::size_t) HWY_ATTR { return linear_of(HueTag(), v); });
        }
    }

    /// The gains of a curve, at least 0.
    void look_up(HueCurveKind kind, const float* at, float* gains) {
        if (curve(kind).is_identity()) {
            std::fill(gains, gains + block_.padded, 1.0f);
            return;
        }
        std::copy(at, at + block_.padded, gains);
        spline_plane<true>(curve(kind), gains, block_);
        raise_to_zero(gains);
    }

    void raise_to_zero(float* plane) {
        map(plane, [](auto v, std::size_t) HWY_ATTR { return larger(hn::Zero(HueTag()), v); });
    }

    void multiply_saturation() {
        map(saturation(), [&](auto s, std::size_t i) HWY_ATTR {
            const HueTag d;
            return s * (hn::Load(d, saturation_gain_ + i) * hn::Load(d, other_gain_ + i));
        });
    }

    void divide_saturation() {
        map(saturation(), [&](auto s, std::size_t i) HWY_ATTR {
            const HueTag d;
            const auto gain = hn::Load(d, other_gain_ + i) * hn::Load(d, saturation_gain_ + i);
            return s / larger(hn::Set(d, 0.01f), gain);
        });
    }

    /// By the gains of the hue, less where there is little of it, and of the saturation.
    template <bool FORWARD>
    void change_luma() {
        const bool linear = is_linear();
        map(luma(), [&](auto y, std::size_t i) HWY_ATTR {
            const HueTag d;
            const auto one = hn::Set(d, 1.0f);
            const auto amount = smaller(hn::Load(d, saturation() + i), one);
            const auto by_hue = one - (one - hn::Load(d, luma_gain_ + i)) * amount;
            const auto by_saturation = hn::Load(d, other_gain_ + i);
            if (linear) {
                const auto gain = by_hue * by_saturation;
                return FORWARD ? y * gain : y / larger(hn::Set(d, 0.01f), gain);
            }
            const auto offset = (by_hue + by_saturation - hn::Set(d, 2.0f)) * hn::Set(d, 0.1f);
            return FORWARD ? y + offset : y - offset;
        });
    }

    void wrap_hue() {
        map(hue(), [](auto h, std::size_t) HWY_ATTR { return h - hn::Floor(h); });
    }

    void shift_hue() {
        wrap_hue();
        const SplineTable<float>& shifts = curve(HueCurveKind::HueShift);
        if (shifts.is_identity()) {
            return;
        }
        std::copy(hue(), hue() + block_.padded, other_gain_);
        spline_plane<true>(shifts, other_gain_, block_);
        map(hue(), [&](auto h, std::size_t i) HWY_ATTR { return h + hn::Load(HueTag(), other_gain_ + i); });
    }

    /// The inverse of a curve of the hue, after whole turns into the range of its values.
    void unwind(HueCurveKind kind) {
        const SplineTable<float>& table = curve(kind);
        if (table.is_identity()) {
            return;
        }
        const float low = table.pieces.front().c, high = table.pieces.back().c;
        map(hue(), [&](auto h, std::size_t) HWY_ATTR {
            const HueTag d;
            const auto first = hn::Set(d, low), last = hn::Set(d, high);
            const auto raised = h + hn::Ceil(first - h), lowered = h - hn::Ceil(h - last);
            return hn::IfThenElse(hn::Lt(h, first), raised, hn::IfThenElse(hn::Gt(h, last), lowered, h));
        });
        spline_plane<false>(table, hue(), block_);
    }

    const HueCurveStage& stage_;
    Block& block_;
    alignas(64) float saturation_gain_[BLOCK_PIXELS];
    alignas(64) float luma_gain_[BLOCK_PIXELS];
    alignas(64) float other_gain_[BLOCK_PIXELS];
};

void hue_curve(const HueCurveStage& stage, Block& block) {
    HueCurveRun run(stage, block);
    if (stage.forward) {
        run.run_forward();
    } else {
        run.run_inverse();
    }
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(hue_curve);

void run_hue_curve(const HueCurveStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(hue_curve)(stage, block);
}

} // namespace pixel
#endif
