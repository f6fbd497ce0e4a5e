#include "pixel/kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_sequence.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/lin_log-inl.h"
#include "pixel/spline-inl.h"
#include "pixel/wide-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

#if HWY_TARGET <= HWY_AVX3

/// The pieces of the lanes: search and look-ups are permutations of registers.
template <bool FORWARD, class DD>
HWY_INLINE Pieces<DD> find_few(DD dd, const SplineTable<double>& table, hn::Vec<DD> v) {
    const auto take = [&](std::size_t part, __m512i at) HWY_ATTR {
        return hn::Vec<DD>{_mm512_permutexvar_pd(at, hn::LoadU(dd, table.few[part].data()).raw)};
    };
    auto at = _mm512_setzero_si512();
    for (int step = SplineTable<double>::FEW / 2; step > 0; step /= 2) {
        const auto next = _mm512_add_epi64(at, _mm512_set1_epi64(step));
        at = _mm512_mask_mov_epi64(at, hn::Ge(v, take(4, next)).raw, next);
    }
    if (!FORWARD) {
        at = _mm512_max_epi64(at, _mm512_set1_epi64(1));
    }
    return {take(0, at), take(1, at), take(2, at), take(3, at)};
}

#endif

/// The pieces of the lanes of a vector.
template <bool FORWARD, class DD>
HWY_INLINE Pieces<DD> find_pieces(DD dd, const SplineTable<double>& table, hn::Vec<DD> v) {
#if HWY_TARGET <= HWY_AVX3
    if (table.pieces.size() <= SplineTable<double>::FEW) {
        return find_few<FORWARD>(dd, table, v);
    }
#endif
    const double* const from = &table.pieces[0].knot;
    const auto first = hn::ShiftLeft<2>(count_starts<FORWARD>(dd, table, v));
    return {hn::GatherIndex(dd, from, first), hn::GatherIndex(dd, from + 1, first),
            hn::GatherIndex(dd, from + 2, first), hn::GatherIndex(dd, from + 3, first)};
}

template <bool FORWARD, class DD>
HWY_INLINE hn::Vec<DD> apply_spline(DD dd, const SplineTable<double>& table, hn::Vec<DD> v) {
    return apply_pieces<FORWARD>(dd, table, find_pieces<FORWARD>(dd, table, v), v);
}

template <class DD>
HWY_INLINE hn::Vec<DD> apply_step(DD dd, const WideStep& step, hn::Vec<DD> v) {
    const bool evaluates = !step.evaluated.is_identity(), solves = !step.solved.is_identity();
    if (!evaluates && !solves) {
        return v;
    }
    if (!solves) {
        return apply_spline<true>(dd, step.evaluated, v);
    }
    const auto solved = apply_spline<false>(dd, step.solved, v);
    if (!evaluates) {
        return solved;
    }
    const auto evaluated = apply_spline<true>(dd, step.evaluated, v);
    const auto above = hn::Ge(v, hn::Set(dd, step.bound));
    return step.solved_below ? hn::IfThenElse(above, evaluated, solved)
                             : hn::IfThenElse(above, solved, evaluated);
}

void sequence(const SequenceStage& stage, Block& block) {
    constexpr float LARGEST_HALF = 65504.0f;
    const hn::ScalableTag<float> d;
    for (std::size_t c = 0; c < 3; ++c) {
        map_plane_slowly(block, c, [&](auto x) HWY_ATTR {
            const auto out = map_wide(d, x, [&](auto dd, auto v) HWY_ATTR {
                if (stage.logarithmic) {
                    v = lin_to_log(dd, v);
                }
                for (const WideStep& step : stage.steps[c]) {
                    v = apply_step(dd, step, v);
                }
                return stage.logarithmic ? log_to_lin(dd, v) : v;
            });
            return stage.capped ? smaller(out, hn::Set(d, LARGEST_HALF)) : out;
        });
    }
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(sequence);

void run_sequence(const SequenceStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(sequence)(stage, block);
}

} // namespace pixel
#endif
