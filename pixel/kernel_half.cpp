#include "pixel/kernels.h"

#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_half.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/lookup-inl.h"
#include "pixel/pixel-inl.h"
#include "pixel/planes-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// Position of a magnitude among the 16-bit floats: the largest one that is not above it, and how far the
/// next one lies above the value, as a fraction of the gap: (0, 1].
template <class D>
struct HalfPosition {
    hn::Vec<hn::RebindToSigned<D>> below;
    hn::Vec<D> distance;
};

template <class D>
HWY_INLINE HalfPosition<D> locate_half(D d, hn::Vec<D> magnitude) {
    const hn::RebindToSigned<D> di;
    // Normal: the 13 low bits of the mantissa lie between neighbors; exponents differ by 127 - 15.
    const auto shifted = hn::Sub(hn::BitCast(di, magnitude), hn::Set(di, 112 << 23));
    const auto gap = hn::Sub(hn::Set(di, 0x2000), hn::And(shifted, hn::Set(di, 0x1FFF)));
    const auto normal_distance = hn::Mul(hn::ConvertTo(d, gap), hn::Set(d, 0x1p-13f));
    // Denormal: neighbors are 2^-24 apart.
    const auto denormal = hn::Lt(magnitude, hn::Set(d, 0x1p-14f));
    const auto steps = hn::IfThenElseZero(denormal, hn::Mul(magnitude, hn::Set(d, 0x1p24f)));
    const auto floor = hn::Floor(steps);
    const auto small_distance = hn::Sub(hn::Add(floor, hn::Set(d, 1.0f)), steps);
    return {hn::IfThenElse(hn::RebindMask(di, denormal), to_index(d, floor), hn::ShiftRight<13>(shifted)),
            hn::IfThenElse(denormal, small_distance, normal_distance)};
}

/// The entry below a value, and how far the next one lies above it as a fraction of the gap. Distance 0
/// stands for "the entry below alone", which no value between two entries has.
template <class D>
struct HalfLookup {
    hn::Vec<hn::RebindToSigned<D>> index;
    hn::Vec<D> distance;
};

/// Magnitudes from the largest half on take its entry; a NaN takes the entry of its truncated bits.
template <class D>
HWY_INLINE HalfLookup<D> find_half(D d, hn::Vec<D> x) {
    const hn::RebindToSigned<D> di;
    const auto largest = hn::Set(d, 65504.0f);
    const auto bits = hn::BitCast(di, x);
    const auto inside = hn::Lt(hn::Abs(x), largest);
    const auto ordered = hn::Eq(x, x);
    const auto position = locate_half(d, hn::IfThenElse(inside, hn::Abs(x), largest));
    const auto payload = hn::And(hn::ShiftRight<13>(bits), hn::Set(di, 0x3FF));
    const auto quiet = hn::IfThenElse(hn::Eq(payload, hn::Zero(di)), hn::Set(di, 1), payload);
    const auto magnitude =
        hn::IfThenElse(hn::RebindMask(di, ordered), position.below, hn::Or(quiet, hn::Set(di, 0x7C00)));
    const auto sign = hn::And(hn::ShiftRight<16>(bits), hn::Set(di, 0x8000));
    const auto distance = hn::IfThenElseZero(inside, position.distance);
    return {hn::Or(magnitude, sign), hn::IfThenElse(ordered, distance, hn::Set(d, 1.0f))};
}

template <class D>
HWY_INLINE hn::Vec<D> interpolate_half(D d, hn::Vec<D> below, hn::Vec<D> above, hn::Vec<D> distance) {
    above = hn::IfThenElse(hn::Eq(distance, hn::Zero(d)), below, above);
    return hn::Add(hn::Mul(hn::Sub(below, above), distance), above);
}

void half_plane(const HalfTableStage& stage, std::size_t c, Block& block) {
    const hn::ScalableTag<float> d;
    const hn::RebindToSigned<decltype(d)> di;
    alignas(64) std::int32_t index[BLOCK_PIXELS];
    float* const plane = block.plane[c];
    const float* const values = stage.curve[static_cast<std::size_t>(stage.curve_of[c])].values.data();
    for_each_vector(block, [&](std::size_t i) HWY_ATTR {
        const auto place = find_half(d, hn::Load(d, plane + i));
        hn::Store(place.index, di, index + i);
        hn::Store(place.distance, d, plane + i);
    });
    for_each_vector_and_line(block, [&](std::size_t i) HWY_ATTR {
        auto below = hn::Zero(d), above = below;
        load_pairs(d, values, index + i, below, above);
        hn::Store(interpolate_half(d, below, above, hn::Load(d, plane + i)), d, plane + i);
    });
}

void half_table(const HalfTableStage& stage, Block& block) {
    for (std::size_t c = 0; c < 3; ++c) {
        half_plane(stage, c, block);
    }
}

#if HWY_TARGET != HWY_SCALAR

HWY_INLINE PixelVec half_table_alone(const HalfTableStage& stage, PixelVec pixel) {
    const PixelTag d;
    const HalfLookup<PixelTag> place = find_half(d, pixel);
    auto below = hn::Zero(d), above = below;
    load_pairs_of_curves(stage, d, place.index, below, above);
    return keep_alpha(pixel, interpolate_half(d, below, above, place.distance));
}

#endif

PIXEL_KERNEL(HalfTableStage, half_table, half_table_alone)

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(half_table);
HWY_EXPORT(half_table_pixel);

void run_half_table(const HalfTableStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(half_table)(stage, block);
}

PixelKernel pixel_kernel(const HalfTableStage&) {
    return HWY_DYNAMIC_DISPATCH(half_table_pixel);
}

} // namespace pixel
#endif
