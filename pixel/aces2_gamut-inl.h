/// The gamut compression of ACES 2.0 over a block.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_ACES2_GAMUT_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_ACES2_GAMUT_INL_H_
#undef PIXEL_ACES2_GAMUT_INL_H_
#else
#define PIXEL_ACES2_GAMUT_INL_H_
#endif

#include <cstddef>

#include <hwy/highway.h>

#include "pixel/aces2-inl.h"
#include "pixel/aces2_planes-inl.h"
#include "pixel/lookup-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// Needs the reach at the hues, and where these are in the table of the gamut.
class Aces2GamutSteps : protected Aces2Planes {
public:
    /// Compresses J and M, or expands them.
    template <bool FORWARD>
    void compress_gamut() {
        find_boundaries();
        for_each([&](std::size_t i) HWY_ATTR { store(load(x(), i), gain_j_, i); });
        compress_along_lines<FORWARD>();
        if (!FORWARD && narrow_lines()) {
            compress_along_lines<FORWARD>();
        }
        const Tag d;
        const auto zero = hn::Zero(d), max_j = hn::Set(d, aces_.factors.max_j);
        for_each([&](std::size_t i) HWY_ATTR {
            const auto j = load(x(), i), m = load(y(), i);
            const auto black = hn::Le(j, zero), gray = hn::Or(hn::Le(m, zero), hn::Gt(j, max_j));
            store(hn::IfThenZeroElse(black, hn::IfThenElse(gray, j, load(new_j_, i))), x(), i);
            store(hn::IfThenZeroElse(hn::Or(black, gray), load(new_m_, i)), y(), i);
        });
    }

protected:
    using Aces2Planes::Aces2Planes;

private:
    void find_boundaries() {
        const Tag d;
        const float* const table = &aces_.gamut.data()->hue.value;
        for_each([&](std::size_t i) HWY_ATTR {
            auto hue = hn::Zero(d), hue_step = hue, cusp_j = hue, j_step = hue, cusp_m = hue, m_step = hue,
                 root = hue, root_step = hue;
            load_quads<1>(d, table, at_ + i, hue, hue_step, cusp_j, j_step);
            load_quads<1>(d, table + 4, at_ + i, cusp_m, m_step, root, root_step);
            const auto t = (load(z(), i) - hue) / hue_step;
            store(interpolated<Tag>(cusp_j, j_step, t), cusp_j_, i);
            store(interpolated<Tag>(cusp_m, m_step, t), cusp_m_, i);
            store(interpolated<Tag>(root, root_step, t), upper_root_, i);
        });
    }

    /// Takes the width of lines from the J that was found, above the threshold; false if no J is.
    bool narrow_lines() {
        const Tag d;
        bool any = false;
        for_each([&](std::size_t i) HWY_ATTR {
            const auto j = load(x(), i);
            const auto light = hn::Gt(j, gain_threshold(d, aces_.factors, load(cusp_j_, i)));
            any = any || !hn::AllFalse(d, light);
            store(hn::IfThenElse(light, load(new_j_, i), j), gain_j_, i);
        });
        return any;
    }

    template <bool FORWARD>
    void compress_along_lines() {
        find_lines();
        float* const lower = scratch_[0];
        float* const upper = scratch_[1];
        float* const reach = scratch_[2];
        raise(lower, aces_.factors.lower_root);
        raise(upper, upper_root_);
        raise(reach, aces_.model.root);
        const Tag d;
        const auto peak = hn::Set(d, aces_.factors.max_j);
        for_each([&](std::size_t i) HWY_ATTR {
            const auto slope = load(slope_, i), cusp_axis = load(cusp_axis_, i), m = load(y(), i);
            const auto cusp_j = load(cusp_j_, i), cusp_m = load(cusp_m_, i);
            const auto below = meeting_m(cusp_axis * load(lower, i), slope, cusp_j, cusp_m);
            const auto above =
                meeting_m((peak - cusp_axis) * load(upper, i), hn::Neg(slope), peak - cusp_j, cusp_m);
            const auto boundary = smooth_smaller(d, below, above, cusp_m);
            const auto far = meeting_m(peak * load(reach, i), slope, peak, load(reach_, i));
            const auto moved = remapped<FORWARD>(d, m, boundary, far);
            // Where roundings near max_j give NaN, nothing is within the boundary either.
            const auto inside = hn::Gt(boundary, hn::Zero(d));
            store(hn::IfThenElse(inside, load(axis_, i) + moved * slope, load(x(), i)), new_j_, i);
            store(hn::IfThenElseZero(inside, moved), new_m_, i);
        });
    }

    /// The lines of compression, and what is raised to find where they meet the boundaries.
    void find_lines() {
        const Tag d;
        const float max_j = aces_.factors.max_j;
        const auto peak = hn::Set(d, max_j);
        for_each([&](std::size_t i) HWY_ATTR {
            const auto cusp_j = load(cusp_j_, i), focus = focus_j(d, aces_.factors, cusp_j);
            const auto threshold = gain_threshold(d, aces_.factors, cusp_j);
            const auto gain = focus_gain(d, aces_.factors, threshold, load(gain_j_, i));
            const auto axis = axis_j(d, max_j, focus, gain, load(x(), i), load(y(), i));
            const auto cusp_axis = axis_j(d, max_j, focus, gain, cusp_j, load(cusp_m_, i));
            store(axis, axis_, i);
            store(cusp_axis, cusp_axis_, i);
            store(line_slope(d, max_j, focus, gain, axis), slope_, i);
            store(axis / cusp_axis, scratch_[0], i);
            store((peak - axis) / (peak - cusp_axis), scratch_[1], i);
            store(axis / peak, scratch_[2], i);
        });
    }

    HWY_ALIGN float cusp_j_[BLOCK_PIXELS];
    HWY_ALIGN float cusp_m_[BLOCK_PIXELS];
    HWY_ALIGN float upper_root_[BLOCK_PIXELS];
    HWY_ALIGN float gain_j_[BLOCK_PIXELS]; ///< J at which the width of a line is taken
    HWY_ALIGN float axis_[BLOCK_PIXELS];   ///< J where the line meets the axis
    HWY_ALIGN float cusp_axis_[BLOCK_PIXELS];
    HWY_ALIGN float slope_[BLOCK_PIXELS];
    HWY_ALIGN float new_j_[BLOCK_PIXELS];
    HWY_ALIGN float new_m_[BLOCK_PIXELS];
};

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
