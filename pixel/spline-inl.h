/// Pieces of splines, evaluated and solved.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_SPLINE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_SPLINE_INL_H_
#undef PIXEL_SPLINE_INL_H_
#else
#define PIXEL_SPLINE_INL_H_
#endif

#include <cmath>
#include <cstddef>

#include <hwy/highway.h>

#include "pixel/stage.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// The pieces of the lanes of a vector.
template <class D>
struct Pieces {
    hn::Vec<D> knot, a, b, c;
};

/// Parts without curvature stay lines for infinite values.
template <class D>
HWY_INLINE hn::Vec<D> evaluate(D d, const Pieces<D>& piece, hn::Vec<D> x) {
    const auto t = hn::Sub(x, piece.knot);
    const auto curvature = hn::IfThenElse(hn::Eq(piece.a, hn::Zero(d)), hn::Zero(d), hn::Mul(piece.a, t));
    return hn::Add(hn::Mul(hn::Add(curvature, piece.b), t), piece.c);
}

/// The x of a y on pieces between the first and the last.
template <class D>
HWY_INLINE hn::Vec<D> solve(D d, const Pieces<D>& piece, hn::Vec<D> y) {
    using T = hn::TFromD<D>;
    const auto c = hn::Sub(piece.c, y);
    const auto four = hn::Mul(hn::Mul(hn::Set(d, static_cast<T>(4)), piece.a), c);
    const auto root = hn::Sqrt(hn::Sub(hn::Mul(piece.b, piece.b), four));
    const auto t = hn::Div(hn::Mul(hn::Set(d, static_cast<T>(-2)), c), hn::Add(root, piece.b));
    return hn::Add(piece.knot, t);
}

/// The x of a y on one of the lines outside; lines that hardly rise stop at their knot.
template <class D>
HWY_INLINE hn::Vec<D> solve_line(D d, const typename Spline<hn::TFromD<D>>::Piece& line, hn::Vec<D> y) {
    using T = hn::TFromD<D>;
    const auto knot = hn::Set(d, line.knot);
    if (std::abs(line.b) < static_cast<T>(1e-5f)) {
        return knot;
    }
    return hn::Add(hn::Div(hn::Sub(y, hn::Set(d, line.c)), hn::Set(d, line.b)), knot);
}

/// The value of a spline, or its inverse, where the piece is known.
template <bool FORWARD, class D>
HWY_INLINE hn::Vec<D> apply_pieces(D d, const SplineTable<hn::TFromD<D>>& table, const Pieces<D>& piece,
                                   hn::Vec<D> v) {
    if (FORWARD) {
        return evaluate(d, piece, v);
    }
    const auto &first = table.pieces.front(), &last = table.pieces.back();
    auto out = solve(d, piece, v);
    out = hn::IfThenElse(hn::Ge(v, hn::Set(d, last.c)), solve_line(d, last, v), out);
    return hn::IfThenElse(hn::Le(v, hn::Set(d, first.c)), solve_line(d, first, v), out);
}

/// Index of the piece for each lane. Inverse: never the first or the last.
template <bool FORWARD, class D>
HWY_INLINE hn::Vec<hn::RebindToSigned<D>> count_starts(D d, const SplineTable<hn::TFromD<D>>& table,
                                                       hn::Vec<D> v) {
    const hn::RebindToSigned<D> di;
    const std::size_t from = FORWARD ? 1 : 2, to = table.start.size() - (FORWARD ? 0 : 1);
    auto index = hn::Set(di, static_cast<hn::TFromD<decltype(di)>>(from - 1));
    for (std::size_t i = from; i < to; ++i) {
        const auto above = hn::RebindMask(di, hn::Ge(v, hn::Set(d, table.start[i])));
        index = hn::Sub(index, hn::VecFromMask(di, above));
    }
    return index;
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
