#include "pixel/kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_linear.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/clamp-inl.h"
#include "pixel/pixel-inl.h"
#include "pixel/planes-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
void matrix(const MatrixStage& stage, Block& block) {
    const hn::ScalableTag<float> d;
    float* const plane[4] = {block.plane[0], block.plane[1], block.plane[2], block.plane[3]};
    for_each_vector_and_line(block, [&](std::size_t i) HWY_ATTR {
        const auto r = hn::Load(d, plane[0] + i);
        const auto g = hn::Load(d, plane[1] + i);
        const auto b = hn::Load(d, plane[2] + i);
        const auto a = hn::Load(d, plane[3] + i);
        for (int row = 0; row < 4; ++row) {
            auto sum = hn::Mul(r, hn::Set(d, stage.m[row][0]));
            sum = hn::Add(sum, hn::Mul(g, hn::Set(d, stage.m[row][1])));
            sum = hn::Add(sum, hn::Mul(b, hn::Set(d, stage.m[row][2])));
            sum = hn::Add(sum, hn::Mul(a, hn::Set(d, stage.m[row][3])));
            if (stage.has_offset) {
                sum = hn::Add(sum, hn::Set(d, stage.offset[row]));
            }
            hn::Store(sum, d, plane[row] + i);
        }
    });
}

void diagonal(const DiagonalStage& stage, Block& block) {
    const hn::ScalableTag<float> d;
    for (std::size_t c = 0; c < 4; ++c) {
        if (stage.active[c]) {
            const auto scale = hn::Set(d, stage.scale[c]), offset = hn::Set(d, stage.offset[c]);
            map_plane(block, c, [&](auto x) HWY_ATTR { return hn::Add(hn::Mul(x, scale), offset); });
        }
    }
}

void range(const RangeStage& stage, Block& block) {
    const hn::ScalableTag<float> d;
    const auto scale = hn::Set(d, stage.scale), offset = hn::Set(d, stage.offset);
    const auto low = hn::Set(d, stage.low), high = hn::Set(d, stage.high);
    for (std::size_t c = 0; c < 3; ++c) {
        map_plane(block, c, [&](auto x) HWY_ATTR {
            auto t = hn::Add(hn::Mul(x, scale), offset);
            if (stage.has_low) {
                t = at_least(t, low);
            }
            if (stage.has_high) {
                t = at_most(t, high);
            }
            return t;
        });
    }
}

#if HWY_TARGET != HWY_SCALAR

HWY_INLINE PixelVec matrix_alone(const MatrixStage& stage, PixelVec in) {
    auto sum = hn::Mul(hn::Broadcast<0>(in), load_lanes(stage.column[0]));
    sum = hn::Add(sum, hn::Mul(hn::Broadcast<1>(in), load_lanes(stage.column[1])));
    sum = hn::Add(sum, hn::Mul(hn::Broadcast<2>(in), load_lanes(stage.column[2])));
    sum = hn::Add(sum, hn::Mul(hn::Broadcast<3>(in), load_lanes(stage.column[3])));
    return stage.has_offset ? hn::Add(sum, load_lanes(stage.offset)) : sum;
}

HWY_INLINE PixelVec diagonal_alone(const DiagonalStage& stage, PixelVec in) {
    const auto out = hn::Add(hn::Mul(in, load_lanes(stage.scale)), load_lanes(stage.offset));
    return choose_lanes(stage.active.lane, out, in);
}

HWY_INLINE PixelVec range_alone(const RangeStage& stage, PixelVec in) {
    const PixelTag d;
    auto t = hn::Add(hn::Mul(in, hn::Set(d, stage.scale)), hn::Set(d, stage.offset));
    if (stage.has_low) {
        t = at_least(t, hn::Set(d, stage.low));
    }
    if (stage.has_high) {
        t = at_most(t, hn::Set(d, stage.high));
    }
    return keep_alpha(in, t);
}

#endif

PIXEL_KERNEL(MatrixStage, matrix, matrix_alone)
PIXEL_KERNEL(DiagonalStage, diagonal, diagonal_alone)
PIXEL_KERNEL(RangeStage, range, range_alone)

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(matrix);
HWY_EXPORT(matrix_pixel);
HWY_EXPORT(diagonal);
HWY_EXPORT(diagonal_pixel);
HWY_EXPORT(range);
HWY_EXPORT(range_pixel);

void run_matrix(const MatrixStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(matrix)(stage, block);
}

void run_diagonal(const DiagonalStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(diagonal)(stage, block);
}

void run_range(const RangeStage& stage, Block& block) {
    HWY_DYNAMIC_DISPATCH(range)(stage, block);
}

PixelKernel pixel_kernel(const MatrixStage&) {
    return HWY_DYNAMIC_DISPATCH(matrix_pixel);
}

PixelKernel pixel_kernel(const DiagonalStage&) {
    return HWY_DYNAMIC_DISPATCH(diagonal_pixel);
}

PixelKernel pixel_kernel(const RangeStage&) {
    return HWY_DYNAMIC_DISPATCH(range_pixel);
}

} // namespace pixel
#endif
