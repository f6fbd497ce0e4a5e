#include "pixel/kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_cube.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/clamp-inl.h"
#include "pixel/entry-inl.h"
#include "pixel/lookup-inl.h"
#include "pixel/pixel-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// One coordinate of some pixels: the cell's lower corner, its distance to the next node (0 on a node),
/// and the fraction of the way.
template <class D>
struct Axis {
    hn::Vec<hn::RebindToSigned<D>> corner, step;
    hn::Vec<D> fraction;
};

/// `stride` is the distance, in floats, between neighboring entries on this axis.
template <class D>
HWY_INLINE Axis<D> locate(D d, const float* plane, float last, std::int32_t stride) {
    const hn::RebindToSigned<D> di;
    const auto end = hn::Set(d, last);
    const auto x = at_most(at_least(hn::Mul(hn::Load(d, plane), end), hn::Zero(d)), end); // NaN becomes 0
    const auto floor = hn::Floor(x);
    const auto inside = hn::RebindMask(di, hn::Ne(floor, x));
    const auto distance = hn::Set(di, stride);
    return {hn::Mul(to_index(d, floor), distance), hn::IfThenElseZero(inside, distance), hn::Sub(x, floor)};
}

/// Vertices and weights of up to 64 pixels. Tetrahedral uses 4 vertices and 4 weights; trilinear the lower
/// corner, the three steps, and the three fractions.
struct alignas(64) Corners {
    static constexpr std::size_t SIZE = 64;
    std::int32_t offset[4][SIZE];
    float weight[4][SIZE];
};

template <class D>
HWY_INLINE void prepare_trilinear(D d, const Axis<D>& r, const Axis<D>& g, const Axis<D>& b, Corners& out,
                                  std::size_t at) {
    const hn::RebindToSigned<D> di;
    hn::Store(hn::Add(r.corner, hn::Add(g.corner, b.corner)), di, out.offset[0] + at);
    hn::Store(r.step, di, out.offset[1] + at);
    hn::Store(g.step, di, out.offset[2] + at);
    hn::Store(b.step, di, out.offset[3] + at);
    hn::Store(r.fraction, d, out.weight[0] + at);
    hn::Store(g.fraction, d, out.weight[1] + at);
    hn::Store(b.fraction, d, out.weight[2] + at);
}

/// The way from the lower to the upper corner takes the axes in the order of their fractions, largest first.
template <class D>
HWY_INLINE void prepare_tetrahedral(D d, const Axis<D>& r, const Axis<D>& g, const Axis<D>& b, Corners& out,
                                    std::size_t at) {
    const hn::RebindToSigned<D> di;
    const auto largest = hn::Max(r.fraction, hn::Max(g.fraction, b.fraction));
    const auto smallest = hn::Min(r.fraction, hn::Min(g.fraction, b.fraction));
    const auto middle =
        hn::Max(hn::Min(r.fraction, g.fraction), hn::Min(hn::Max(r.fraction, g.fraction), b.fraction));
    const auto r_first = hn::RebindMask(di, hn::Eq(r.fraction, largest));
    const auto g_first = hn::RebindMask(di, hn::Eq(g.fraction, largest));
    const auto first = hn::IfThenElse(r_first, r.step, hn::IfThenElse(g_first, g.step, b.step));
    const auto b_last = hn::RebindMask(di, hn::Eq(b.fraction, smallest));
    const auto g_last = hn::RebindMask(di, hn::Eq(g.fraction, smallest));
    const auto last = hn::IfThenElse(b_last, b.step, hn::IfThenElse(g_last, g.step, r.step));
    const auto corner = hn::Add(r.corner, hn::Add(g.corner, b.corner));
    const auto opposite = hn::Add(corner, hn::Add(r.step, hn::Add(g.step, b.step)));
    hn::Store(corner, di, out.offset[0] + at);
    hn::Store(hn::Add(corner, first), di, out.offset[1] + at);
    hn::Store(hn::Sub(opposite, last), di, out.offset[2] + at);
    hn::Store(opposite, di, out.offset[3] + at);
    hn::Store(hn::Sub(hn::Set(d, 1.0f), largest), d, out.weight[0] + at);
    hn::Store(hn::Sub(largest, middle), d, out.weight[1] + at);
    hn::Store(hn::Sub(middle, smallest), d, out.weight[2] + at);
    hn::Store(smallest, d, out.weight[3] + at);
}

template <bool FUSED>
HWY_INLINE Entry blend(Entry from, Entry to, float fraction) {
    if constexpr (FUSED) {
        return sum(weighted(from, 1 - fraction), weighted(to, fraction));
    } else {
        return sum(weighted(difference(to, from), fraction), from);
    }
}

/// Along blue, then green, then red.
template <bool FUSED>
HWY_INLINE Entry trilinear(const float* table, const Corners& corners, std::size_t i) {
    const float* p = table + corners.offset[0][i];
    const std::int32_t r = corners.offset[1][i], g = corners.offset[2][i], b = corners.offset[3][i];
    const float fr = corners.weight[0][i], fg = corners.weight[1][i], fb = corners.weight[2][i];
    const auto edge = [&](std::int32_t at)
                          HWY_ATTR { return blend<FUSED>(load_entry(p + at), load_entry(p + at + b), fb); };
    const auto face = [&](std::int32_t at) HWY_ATTR { return blend<FUSED>(edge(at), edge(at + g), fg); };
    return blend<FUSED>(face(0), face(r), fr);
}

template <bool FUSED>
HWY_INLINE Entry tetrahedral(const float* table, const Corners& corners, std::size_t i) {
    Entry out = weighted(load_entry(table + corners.offset[0][i]), corners.weight[0][i]);
    for (int k = 1; k < 4; ++k) {
        const Entry entry = load_entry(table + corners.offset[k][i]);
        const float weight = corners.weight[k][i];
        out = FUSED ? add_weighted(out, entry, weight) : sum(out, weighted(entry, weight));
    }
    return out;
}

/// 0, 1, 2, ...: takes entries one after the other.
struct Order {
    std::int32_t at[Corners::SIZE];
    constexpr Order() : at() {
        for (std::size_t i = 0; i < Corners::SIZE; ++i) {
            at[i] = static_cast<std::int32_t>(i);
        }
    }
};

template <bool TETRAHEDRAL, bool FUSED>
void cube_planes(const CubeStage& stage, Block& block) {
    const hn::ScalableTag<float> d;
    const float last = static_cast<float>(stage.edge - 1);
    const auto edge = static_cast<std::int32_t>(stage.edge);
    constexpr std::size_t PIXELS_PER_LINE = 4; // of packed RGBA
    static constexpr Order IN_ORDER;
    float* const plane[3] = {block.plane[0], block.plane[1], block.plane[2]};
    Corners corners;
    alignas(64) float result[4 * Corners::SIZE];
    for (std::size_t start = 0; start < block.padded; start += Corners::SIZE) {
        const std::size_t count = HWY_MIN(Corners::SIZE, block.padded - start);
        for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
            const auto r = locate(d, plane[0] + start + i, last, 4 * edge * edge);
            const auto g = locate(d, plane[1] + start + i, last, 4 * edge);
            const auto b = locate(d, plane[2] + start + i, last, 4);
            if constexpr (TETRAHEDRAL) {
                prepare_tetrahedral(d, r, g, b, corners, i);
            } else {
                prepare_trilinear(d, r, g, b, corners, i);
            }
        }
        for (std::size_t i = 0; i < count; ++i) {
            if (i % PIXELS_PER_LINE == 0) {
                block.lookahead.fetch_line();
            }
            store_entry(TETRAHEDRAL ? tetrahedral<FUSED>(stage.rgbx.data(), corners, i)
                                    : trilinear<FUSED>(stage.rgbx.data(), corners, i),
                        result + 4 * i);
        }
        for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
            auto r = hn::Zero(d), g = r, b = r, unused = r;
            load_quads<4>(d, result, IN_ORDER.at + i, r, g, b, unused);
            hn::Store(r, d, plane[0] + start + i);
            hn::Store(g, d, plane[1] + start + i);
            hn::Store(b, d, plane[2] + start + i);
        }
    }
}

void cube(const CubeStage& stage, Block& block) {
    const bool tetrahedral = stage.interpolation == CubeInterpolation::Tetrahedral;
    const bool fused = stage.arithmetic == TableArithmetic::Fused;
    const auto run = tetrahedral ? (fused ? cube_planes<true, true> : cube_planes<true, false>)
                                 : (fused ? cube_planes<false, true> : cube_planes<false, false>);
    run(stage, block);
}

#if HWY_TARGET != HWY_SCALAR

/// The vertices and weights of one pixel as numbers, which is what the loads of entries need.
struct alignas(16) Cell {
    float fraction[4];
    std::int32_t corner[4], step[4];
};

HWY_INLINE Cell locate_cell(const CubeStage& stage, PixelVec pixel) {
    const PixelTag d;
    const hn::RebindToSigned<PixelTag> di;
    const auto edge = static_cast<std::int32_t>(stage.edge);
    alignas(16) const std::int32_t stride[4] = {4 * edge * edge, 4 * edge, 4, 0};
    const auto end = hn::Set(d, static_cast<float>(stage.edge - 1));
    const auto x = at_most(at_least(hn::Mul(pixel, end), hn::Zero(d)), end);
    const auto floor = hn::Floor(x);
    const auto distance = hn::Load(di, stride);
    Cell cell;
    hn::Store(hn::Sub(x, floor), d, cell.fraction);
    hn::Store(hn::Mul(to_index(d, floor), distance), di, cell.corner);
    hn::Store(hn::IfThenElseZero(hn::RebindMask(di, hn::Ne(floor, x)), distance), di, cell.step);
    return cell;
}

HWY_INLINE void prepare_trilinear(const Cell& cell, Corners& out) {
    out.offset[0][0] = cell.corner[0] + cell.corner[1] + cell.corner[2];
    for (std::size_t axis = 0; axis < 3; ++axis) {
        out.offset[axis + 1][0] = cell.step[axis];
        out.weight[axis][0] = cell.fraction[axis];
    }
}

HWY_INLINE void prepare_tetrahedral(const Cell& cell, Corners& out) {
    const float r = cell.fraction[0], g = cell.fraction[1], b = cell.fraction[2];
    const float largest = HWY_MAX(r, HWY_MAX(g, b)), smallest = HWY_MIN(r, HWY_MIN(g, b));
    const float middle = HWY_MAX(HWY_MIN(r, g), HWY_MIN(HWY_MAX(r, g), b));
    const std::int32_t* const step = cell.step;
    const std::int32_t first = r == largest ? step[0] : g == largest ? step[1] : step[2];
    const std::int32_t last = b == smallest ? step[2] : g == smallest ? step[1] : step[0];
    const std::int32_t corner = cell.corner[0] + cell.corner[1] + cell.corner[2];
    const std::int32_t opposite = corner + step[0] + step[1] + step[2];
    out.offset[0][0] = corner;
    out.offset[1][0] = corner + first;
    out.offset[2][0] = opposite - last;
    out.offset[3][0] = opposite;
    out.weight[0][0] = 1.0f - largest;
    out.weight[1][0] = largest - middle;
    out.weight[2][0] = middle - smallest;
    out.weight[3][0] = smallest;
}

HWY_INLINE PixelVec cube_alone(const CubeStage& stage, PixelVec pixel) {
    const Cell cell = locate_cell(stage, pixel);
    const float* const entries = stage.rgbx.data();
    const bool fused = stage.arithmetic == TableArithmetic::Fused;
    Corners corners; // Only the first of each is used.
    if (stage.interpolation == CubeInterpolation::Tetrahedral) {
        prepare_tetrahedral(cell, corners);
        return keep_alpha(pixel, fused ? tetrahedral<true>(entries, corners, 0)
                                       : tetrahedral<false>(entries, corners, 0));
    }
    prepare_trilinear(cell, corners);
    return keep_alpha(pixel,
                      fused ? trilinear<true>(entries, corners, 0) : trilinear<false>(entries, corners, 0));
}

#endif

PIXEL_KERNEL(CubeStage, cube, cube_alone)

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(cube);
HWY_EXPORT(cube_pixel);

void run_cube(const CubeStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(cube)(stage, block);
}

PixelKernel pixel_kernel(const CubeStage&) {
    return HWY_DYNAMIC_DISPATCH(cube_pixel);
}

} // namespace pixel
#endif
