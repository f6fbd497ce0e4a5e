/// Functions of red, green and blue together, and the C library's minimum and maximum.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_COLORS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_COLORS_INL_H_
#undef PIXEL_COLORS_INL_H_
#else
#define PIXEL_COLORS_INL_H_
#endif

#include <cstddef>

#include <hwy/highway.h>

#include "pixel/clamp-inl.h"
#include "pixel/planes-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// As std::max and std::min: `a` unless `b` is strictly greater (less), so that NaN in `b` gives `a`, and NaN
/// in `a` stays.
template <class V>
HWY_INLINE V larger(V a, V b) {
    return at_least(b, a);
}
template <class V>
HWY_INLINE V smaller(V a, V b) {
    return at_most(b, a);
}

/// Calls `f(tag, red, green, blue)`, which changes the vectors, for each vector of the block.
template <class F>
HWY_INLINE void map_colors(Block& block, F&& f) {
    const hn::ScalableTag<float> d;
    float* const plane[3] = {block.plane[0], block.plane[1], block.plane[2]};
    for_each_vector_and_line(block, [&](std::size_t i) HWY_ATTR {
        auto r = hn::Load(d, plane[0] + i);
        auto g = hn::Load(d, plane[1] + i);
        auto b = hn::Load(d, plane[2] + i);
        f(d, r, g, b);
        hn::Store(r, d, plane[0] + i);
        hn::Store(g, d, plane[1] + i);
        hn::Store(b, d, plane[2] + i);
    });
}

/// (a + b + c) in this order, each term multiplied by its weight first.
template <class D>
HWY_INLINE hn::Vec<D> weighted_sum(D d, hn::Vec<D> r, hn::Vec<D> g, hn::Vec<D> b, hn::TFromD<D> wr,
                                   hn::TFromD<D> wg, hn::TFromD<D> wb) {
    const auto sum = hn::Add(hn::Mul(hn::Set(d, wr), r), hn::Mul(hn::Set(d, wg), g));
    return hn::Add(sum, hn::Mul(hn::Set(d, wb), b));
}

/// The saturation of the ACES red modifier and glow.
template <class D>
HWY_INLINE hn::Vec<D> aces_saturation(D d, hn::Vec<D> r, hn::Vec<D> g, hn::Vec<D> b) {
    const auto tiny = hn::Set(d, static_cast<hn::TFromD<D>>(1e-10f));
    const auto most = larger(larger(r, g), b), least = smaller(smaller(r, g), b);
    return hn::Div(hn::Sub(larger(tiny, most), larger(tiny, least)),
                   larger(hn::Set(d, static_cast<hn::TFromD<D>>(1e-2f)), most));
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
