#include "pixel/kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_cdl.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/clamp-inl.h"
#include "pixel/pixel-inl.h"
#include "pixel/planes-inl.h"
#include "pixel/power-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

template <class D>
HWY_INLINE hn::Vec<D> clamp_unit(D d, hn::Vec<D> x) {
    return at_most(at_least(x, hn::Zero(d)), hn::Set(d, 1.0f)); // NaN becomes 0
}

/// The clamped style raises values in [0, 1]; the other does not change negative values and makes NaN 0.
template <bool CLAMP, class D, class P>
HWY_INLINE hn::Vec<D> cdl_power(D d, const P& power, hn::Vec<D> x) {
    if (CLAMP) {
        x = clamp_unit(d, x);
        return hn::IfThenElse(hn::Gt(x, hn::Zero(d)), power.raw(d, x), power.rest(d, x));
    }
    x = hn::IfThenElseZero(hn::Eq(x, x), x);
    const auto raised = power_of(d, power, x);
    return hn::IfThenElse(hn::Lt(x, hn::Zero(d)), x, raised);
}

template <bool CLAMP>
void saturate(float saturation, Block& block) {
    const hn::ScalableTag<float> d;
    const auto red_weight = hn::Set(d, 0.2126f), green_weight = hn::Set(d, 0.7152f);
    const auto blue_weight = hn::Set(d, 0.0722f), amount = hn::Set(d, saturation);
    float* const plane[3] = {block.plane[0], block.plane[1], block.plane[2]};
    for_each_vector(block, [&](std::size_t i) HWY_ATTR {
        const auto r = hn::Load(d, plane[0] + i);
        const auto g = hn::Load(d, plane[1] + i);
        const auto b = hn::Load(d, plane[2] + i);
        auto luma = hn::Add(hn::Mul(r, red_weight), hn::Mul(g, green_weight));
        luma = hn::Add(luma, hn::Mul(b, blue_weight));
        for (int c = 0; c < 3; ++c) {
            float* p = plane[c] + i;
            const auto out = hn::Add(luma, hn::Mul(amount, hn::Sub(hn::Load(d, p), luma)));
            hn::Store(CLAMP ? clamp_unit(d, out) : out, d, p);
        }
    });
}

template <bool CLAMP>
void cdl_forward(const CdlStage& stage, Block& block) {
    const hn::ScalableTag<float> d;
    for (std::size_t c = 0; c < 3; ++c) {
        with_power(stage.power[c], [&](const auto& power) HWY_ATTR {
            const auto slope = hn::Set(d, stage.slope[c]), offset = hn::Set(d, stage.offset[c]);
            map_plane_slowly(block, c, [&](auto x) HWY_ATTR {
                return cdl_power<CLAMP>(d, power, hn::Add(hn::Mul(x, slope), offset));
            });
        });
    }
    saturate<CLAMP>(stage.saturation, block);
}

template <bool CLAMP>
void cdl_inverse(const CdlStage& stage, Block& block) {
    const hn::ScalableTag<float> d;
    if (CLAMP) {
        for (std::size_t c = 0; c < 3; ++c) {
            map_plane(block, c, [&](auto x) HWY_ATTR { return clamp_unit(d, x); });
        }
    }
    saturate<CLAMP>(stage.saturation, block);
    for (std::size_t c = 0; c < 3; ++c) {
        with_power(stage.power[c], [&](const auto& power) HWY_ATTR {
            const auto slope = hn::Set(d, stage.slope[c]), offset = hn::Set(d, stage.offset[c]);
            map_plane_slowly(block, c, [&](auto x) HWY_ATTR {
                const auto out = hn::Mul(hn::Sub(cdl_power<CLAMP>(d, power, x), offset), slope);
                return CLAMP ? clamp_unit(d, out) : out;
            });
        });
    }
}

void cdl(const CdlStage& stage, Block& block) {
    const auto run = stage.clamp ? (stage.forward ? cdl_forward<true> : cdl_inverse<true>)
                                 : (stage.forward ? cdl_forward<false> : cdl_inverse<false>);
    run(stage, block);
}

#if HWY_TARGET != HWY_SCALAR

template <bool CLAMP>
HWY_INLINE PixelVec cdl_powers(const CdlStage& stage, PixelVec x) {
    const PixelTag d;
    x = CLAMP ? clamp_unit(d, x) : hn::IfThenElseZero(hn::Eq(x, x), x);
    if (!stage.raises) {
        return x;
    }
    const auto raised = powers_of(d, LanePowers{stage.power}, x);
    return CLAMP ? raised : hn::IfThenElse(hn::Lt(x, hn::Zero(d)), x, raised);
}

template <bool CLAMP>
HWY_INLINE PixelVec saturate_alone(float saturation, PixelVec x) {
    const PixelTag d;
    auto luma = hn::Add(hn::Mul(hn::Broadcast<0>(x), hn::Set(d, 0.2126f)),
                        hn::Mul(hn::Broadcast<1>(x), hn::Set(d, 0.7152f)));
    luma = hn::Add(luma, hn::Mul(hn::Broadcast<2>(x), hn::Set(d, 0.0722f)));
    const auto out = hn::Add(luma, hn::Mul(hn::Set(d, saturation), hn::Sub(x, luma)));
    return CLAMP ? clamp_unit(d, out) : out;
}

template <bool CLAMP>
HWY_INLINE PixelVec cdl_forward_alone(const CdlStage& stage, PixelVec in) {
    const auto x = hn::Add(hn::Mul(in, load_lanes(stage.slope)), load_lanes(stage.offset));
    return saturate_alone<CLAMP>(stage.saturation, cdl_powers<CLAMP>(stage, x));
}

template <bool CLAMP>
HWY_INLINE PixelVec cdl_inverse_alone(const CdlStage& stage, PixelVec in) {
    const PixelTag d;
    const auto x = saturate_alone<CLAMP>(stage.saturation, CLAMP ? clamp_unit(d, in) : in);
    const auto out =
        hn::Mul(hn::Sub(cdl_powers<CLAMP>(stage, x), load_lanes(stage.offset)), load_lanes(stage.slope));
    return CLAMP ? clamp_unit(d, out) : out;
}

HWY_INLINE PixelVec cdl_alone(const CdlStage& stage, PixelVec in) {
    if (stage.clamp) {
        return keep_alpha(in, stage.forward ? cdl_forward_alone<true>(stage, in)
                                            : cdl_inverse_alone<true>(stage, in));
    }
    return keep_alpha(in, stage.forward ? cdl_forward_alone<false>(stage, in)
                                        : cdl_inverse_alone<false>(stage, in));
}

#endif

PIXEL_KERNEL(CdlStage, cdl, cdl_alone)

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(cdl);
HWY_EXPORT(cdl_pixel);

void run_cdl(const CdlStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(cdl)(stage, block);
}

PixelKernel pixel_kernel(const CdlStage&) {
    return HWY_DYNAMIC_DISPATCH(cdl_pixel);
}

} // namespace pixel
#endif
