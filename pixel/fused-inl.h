/// Multiply-add with a single rounding on every instruction set.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_FUSED_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_FUSED_INL_H_
#undef PIXEL_FUSED_INL_H_
#else
#define PIXEL_FUSED_INL_H_
#endif

#include <cstddef>

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// Doubles hold the product exactly, and the sum to more than twice the digits of a float.
HWY_INLINE float fused_in_double(float a, float b, float c) {
    return static_cast<float>(static_cast<double>(a) * static_cast<double>(b) + static_cast<double>(c));
}

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

/// a * b + c.
template <class D>
HWY_INLINE hn::Vec<D> multiply_add_once(D d, hn::Vec<D> a, hn::Vec<D> b, hn::Vec<D> c) {
    constexpr std::size_t N = hn::MaxLanes(d);
    alignas(16) float factor[N], other[N], sum[N];
    hn::Store(a, d, factor);
    hn::Store(b, d, other);
    hn::Store(c, d, sum);
    for (std::size_t i = 0; i < N; ++i) {
        sum[i] = fused_in_double(factor[i], other[i], sum[i]);
    }
    return hn::Load(d, sum);
}

#elif HWY_ARCH_X86 && HWY_TARGET > HWY_AVX2

template <class D>
HWY_INLINE hn::Vec<D> multiply_add_once(D d, hn::Vec<D> a, hn::Vec<D> b, hn::Vec<D> c) {
    const hn::Half<D> half;
    const hn::Rebind<double, hn::Half<D>> wide;
    const auto of_half = [&](auto x, auto y, auto z) HWY_ATTR {
        const auto product = hn::Mul(hn::PromoteTo(wide, x), hn::PromoteTo(wide, y));
        return hn::DemoteTo(half, hn::Add(product, hn::PromoteTo(wide, z)));
    };
    const auto low = of_half(hn::LowerHalf(half, a), hn::LowerHalf(half, b), hn::LowerHalf(half, c));
    const auto high = of_half(hn::UpperHalf(half, a), hn::UpperHalf(half, b), hn::UpperHalf(half, c));
    return hn::Combine(d, high, low);
}

#else

template <class D>
HWY_INLINE hn::Vec<D> multiply_add_once(D, hn::Vec<D> a, hn::Vec<D> b, hn::Vec<D> c) {
    return hn::MulAdd(a, b, c);
}

#endif

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
