/// Splines of all numbers of a plane.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_SPLINE_PLANE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_SPLINE_PLANE_INL_H_
#undef PIXEL_SPLINE_PLANE_INL_H_
#else
#define PIXEL_SPLINE_PLANE_INL_H_
#endif

#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "pixel/lookup-inl.h"
#include "pixel/planes-inl.h"
#include "pixel/spline-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET <= HWY_AVX3

/// Splines of few pieces in registers: the search and the look-ups are permutations.
class RegisterSpline {
public:
    static bool fits(const SplineTable<float>& table) {
        return table.pieces.size() <= SplineTable<float>::FEW;
    }

    HWY_INLINE explicit RegisterSpline(const SplineTable<float>& table) {
        for (std::size_t k = 0; k < PARTS; ++k) {
            low_[k] = _mm512_loadu_ps(table.few[k].data());
            high_[k] = _mm512_loadu_ps(table.few[k].data() + SplineTable<float>::FEW / 2);
        }
    }

    template <bool FORWARD, class D>
    HWY_INLINE Pieces<D> find(D, hn::Vec<D> v) const {
        auto at = _mm512_setzero_si512();
        for (int step = SplineTable<float>::FEW / 2; step > 0; step /= 2) {
            const auto next = _mm512_add_epi32(at, _mm512_set1_epi32(step));
            const auto start = hn::Vec<D>{look_up(PARTS - 1, next)};
            at = _mm512_mask_mov_epi32(at, hn::Ge(v, start).raw, next);
        }
        if (!FORWARD) {
            at = _mm512_max_epi32(at, _mm512_set1_epi32(1));
        }
        return {hn::Vec<D>{look_up(0, at)}, hn::Vec<D>{look_up(1, at)}, hn::Vec<D>{look_up(2, at)},
                hn::Vec<D>{look_up(3, at)}};
    }

private:
    static constexpr std::size_t PARTS = 5; ///< knots, a, b, c and starts

    HWY_INLINE __m512 look_up(std::size_t k, __m512i at) const {
        return _mm512_permutex2var_ps(low_[k], at, high_[k]);
    }

    __m512 low_[PARTS], high_[PARTS];
};

template <bool FORWARD>
bool spline_plane_in_registers(const SplineTable<float>& table, float* plane, Block& block) {
    if (!RegisterSpline::fits(table)) {
        return false;
    }
    const hn::ScalableTag<float> d;
    const RegisterSpline spline(table);
    for_each_vector_and_line(block, [&](std::size_t i) HWY_ATTR {
        const auto v = hn::Load(d, plane + i);
        hn::Store(apply_pieces<FORWARD>(d, table, spline.find<FORWARD>(d, v), v), d, plane + i);
    });
    return true;
}

#else

template <bool FORWARD>
bool spline_plane_in_registers(const SplineTable<float>&, float*, Block&) {
    return false;
}

#endif

/// Replaces the numbers of a plane, as long as those of the block, by their values or inverses.
template <bool FORWARD>
void spline_plane(const SplineTable<float>& table, float* plane, Block& block) {
    if (table.is_identity() || spline_plane_in_registers<FORWARD>(table, plane, block)) {
        return;
    }
    const hn::ScalableTag<float> d;
    const hn::RebindToSigned<decltype(d)> di;
    alignas(64) std::int32_t index[BLOCK_PIXELS];
    for_each_vector(block, [&](std::size_t i) HWY_ATTR {
        hn::Store(count_starts<FORWARD>(d, table, hn::Load(d, plane + i)), di, index + i);
    });
    const float* const pieces = &table.pieces[0].knot;
    for_each_vector_and_line(block, [&](std::size_t i) HWY_ATTR {
        const auto v = hn::Load(d, plane + i);
        Pieces<hn::ScalableTag<float>> piece{v, v, v, v};
        load_quads<4>(d, pieces, index + i, piece.knot, piece.a, piece.b, piece.c);
        hn::Store(apply_pieces<FORWARD>(d, table, piece, v), d, plane + i);
    });
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
