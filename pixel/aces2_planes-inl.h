/// What the steps of the ACES 2.0 functions over a block have in common.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_ACES2_PLANES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_ACES2_PLANES_INL_H_
#undef PIXEL_ACES2_PLANES_INL_H_
#else
#define PIXEL_ACES2_PLANES_INL_H_
#endif

#include <cstddef>
#include <cstdint>
#include <limits>

#include <hwy/highway.h>

#include "pixel/aces2.h"
#include "pixel/wide-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// A block whose planes hold RGB, achromatic response and two opponent colors, or J, M and hue. Each step is
/// a short pass over the block, so that the processor works on several vectors at a time.
class Aces2Planes {
protected:
    using Tag = hn::ScalableTag<float>;
    using Vector = hn::Vec<Tag>;

    Aces2Planes(const Aces2& aces, Block& block) : aces_(aces), block_(block) {}

    static constexpr int DEGREE_FLOATS = sizeof(HueDegree) / sizeof(float);
    static constexpr int INTERVAL_FLOATS = sizeof(GamutInterval) / sizeof(float);

    float* x() const { return block_.plane[0]; }
    float* y() const { return block_.plane[1]; }
    float* z() const { return block_.plane[2]; }
    static HWY_INLINE Vector load(const float* plane, std::size_t i) { return hn::Load(Tag(), plane + i); }
    static HWY_INLINE void store(Vector v, float* plane, std::size_t i) { hn::Store(v, Tag(), plane + i); }

    template <class F>
    HWY_INLINE void for_each(F&& f) {
        for_each_vector(block_, f);
    }
    template <class F>
    HWY_INLINE void map(float* plane, F&& f) {
        for_each([&](std::size_t i) HWY_ATTR { store(f(load(plane, i)), plane, i); });
    }

    /// x ^ exponent for exponents between -6 and 6; that of a number below 0 is NaN.
    void raise(float* plane, float exponent) {
        map(plane, [&](Vector x) HWY_ATTR { return raised(x, exponent); });
    }

    /// The powers of magnitudes, with the signs of the numbers.
    void raise_colors(float exponent) {
        for (float* const plane : {x(), y(), z()}) {
            map(plane, [&](Vector x) HWY_ATTR { return hn::CopySign(raised(hn::Abs(x), exponent), x); });
        }
    }

    static HWY_INLINE Vector raised(Vector x, float exponent) {
        const double wide = static_cast<double>(exponent);
        const auto power = in_double(
            Tag(),
            [wide](auto dd, auto v)
                HWY_ATTR { return exp2_double(dd, hn::Mul(hn::Set(dd, wide), log2_double(dd, v))); },
            x);
        return or_limit(x, power, exponent < 0);
    }

    /// x ^ exponent, number by number, for exponents between 0 and 6.
    void raise(float* plane, const float* exponents) {
        for_each([&](std::size_t i) HWY_ATTR {
            const auto x = load(plane, i);
            const auto power = in_double(
                Tag(),
                [](auto dd, auto v, auto e)
                    HWY_ATTR { return exp2_double(dd, hn::Mul(e, log2_double(dd, v))); },
                x, load(exponents, i));
            store(or_limit(x, power, false), plane, i);
        });
    }

    /// The powers, but those of 0, infinity and NaN where x is not between 0 and infinity.
    static HWY_INLINE Vector or_limit(Vector x, Vector power, bool reciprocal) {
        const Tag d;
        const auto ordinary = is_ordinary(d, x);
        if (HWY_LIKELY(hn::AllTrue(d, ordinary))) {
            return power;
        }
        const auto limit = reciprocal ? hn::Set(d, 1.0f) / hn::Abs(x) : hn::Abs(x);
        const auto nan = hn::Set(d, std::numeric_limits<float>::quiet_NaN());
        const auto rest = hn::IfThenElse(hn::Lt(x, hn::Zero(d)), nan, limit);
        return hn::IfThenElse(ordinary, power, rest);
    }

    const Aces2& aces_;
    Block& block_;
    HWY_ALIGN float reach_[BLOCK_PIXELS]; ///< largest M of AP1
    HWY_ALIGN float scratch_[3][BLOCK_PIXELS];
    HWY_ALIGN std::int32_t at_[BLOCK_PIXELS]; ///< offset of the hue's entry in a table
};

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
