/// Loads of neighboring table entries for each lane of an index vector, and turns between pixels and planes.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_LOOKUP_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_LOOKUP_INL_H_
#undef PIXEL_LOOKUP_INL_H_
#else
#define PIXEL_LOOKUP_INL_H_
#endif

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// Indices from floats that are whole numbers of the range of indices.
template <class D>
HWY_INLINE hn::Vec<hn::RebindToSigned<D>> to_index(D, hn::Vec<D> v) {
    const hn::RebindToSigned<D> di;
#if HWY_TARGET <= HWY_AVX3 // without the provisions for other floats
    if constexpr (hn::MaxLanes(D()) == 16) {
        return hn::Vec<decltype(di)>{_mm512_cvttps_epi32(v.raw)};
    } else {
        return hn::Vec<decltype(di)>{_mm_cvttps_epi32(v.raw)};
    }
#else
    return hn::ConvertTo(di, v);
#endif
}

#if HWY_TARGET != HWY_SCALAR

/// One vector of N / 4 groups of four floats; group k is loaded from table + STRIDE * at[4 * k].
template <std::size_t N, std::size_t STRIDE>
HWY_INLINE auto load_groups(const float* table, const std::int32_t* at) {
    if constexpr (N == 4) {
        const hn::CappedTag<float, 4> d;
        return hn::LoadU(d, table + STRIDE * static_cast<std::size_t>(at[0]));
    } else {
        const hn::CappedTag<float, N> d;
        return hn::Combine(d, load_groups<N / 2, STRIDE>(table, at + N / 2),
                           load_groups<N / 2, STRIDE>(table, at));
    }
}

/// Swaps rows and columns of the 4 x 4 matrices that the groups of four lanes in `a` to `w` form.
template <class D>
HWY_INLINE void transpose_groups(D d, hn::Vec<D>& a, hn::Vec<D>& b, hn::Vec<D>& c, hn::Vec<D>& w) {
    const hn::Repartition<double, D> dd;
    const auto ab_low = hn::BitCast(dd, hn::InterleaveLower(d, a, b));
    const auto ab_high = hn::BitCast(dd, hn::InterleaveUpper(d, a, b));
    const auto cw_low = hn::BitCast(dd, hn::InterleaveLower(d, c, w));
    const auto cw_high = hn::BitCast(dd, hn::InterleaveUpper(d, c, w));
    a = hn::BitCast(d, hn::InterleaveLower(dd, ab_low, cw_low));
    b = hn::BitCast(d, hn::InterleaveUpper(dd, ab_low, cw_low));
    c = hn::BitCast(d, hn::InterleaveLower(dd, ab_high, cw_high));
    w = hn::BitCast(d, hn::InterleaveUpper(dd, ab_high, cw_high));
}

#endif

/// Writes, for each lane i, the four floats at table + STRIDE * at[i] to lane i of `a`, `b`, `c` and `w`.
/// Indices come from memory, in a separate pass: reading them back right after a vector store is what
/// would cost most here. Four plain loads per group beat gather instructions on every processor measured.
template <std::size_t STRIDE, class D>
HWY_INLINE void load_quads(D d, const float* table, const std::int32_t* at, hn::Vec<D>& a, hn::Vec<D>& b,
                           hn::Vec<D>& c, hn::Vec<D>& w) {
#if HWY_TARGET == HWY_SCALAR
    const float* from = table + STRIDE * static_cast<std::size_t>(at[0]);
    a = hn::Set(d, from[0]);
    b = hn::Set(d, from[1]);
    c = hn::Set(d, from[2]);
    w = hn::Set(d, from[3]);
#else
    constexpr std::size_t N = hn::MaxLanes(d);
    a = load_groups<N, STRIDE>(table, at);
    b = load_groups<N, STRIDE>(table, at + 1);
    c = load_groups<N, STRIDE>(table, at + 2);
    w = load_groups<N, STRIDE>(table, at + 3);
    transpose_groups(d, a, b, c, w);
#endif
}

/// The first two of those four floats; the other two are read all the same.
template <class D>
HWY_INLINE void load_pairs(D d, const float* table, const std::int32_t* at, hn::Vec<D>& first,
                           hn::Vec<D>& second) {
    auto unused = first, unused_too = first;
    load_quads<1>(d, table, at, first, second, unused, unused_too);
}

#if HWY_TARGET != HWY_SCALAR

/// The same for lanes that are red, green, blue and something else, each with the curve that `stage` gives
/// it.
template <class Stage, class D>
HWY_INLINE void load_pairs_of_curves(const Stage& stage, D d, hn::Vec<hn::RebindToSigned<D>> index,
                                     hn::Vec<D>& first, hn::Vec<D>& second) {
    alignas(16) std::int32_t at[4];
    hn::Store(index, hn::RebindToSigned<D>(), at);
    const auto load = [&](std::size_t c) HWY_ATTR {
        return hn::LoadU(d, stage.curve[static_cast<std::size_t>(stage.curve_of[c])].values.data() + at[c]);
    };
    auto r = load(0), g = load(1), b = load(2), unused = b;
    transpose_groups(d, r, g, b, unused);
    first = r;
    second = g;
}

#endif

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
