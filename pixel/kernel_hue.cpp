#include "pixel/kernels.h"

#include <algorithm>
#include <variant>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernel_hue.cpp"
#include "pixel/vector_targets.h"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "pixel/planes-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {

/// Which channels hold the largest, the middle and the least value. Equal values and NaN count as not larger.
template <class D>
struct Order {
    hn::Mask<D> red_over_green, green_over_blue, red_over_blue;

    Order(D, hn::Vec<D> r, hn::Vec<D> g, hn::Vec<D> b)
        : red_over_green(hn::Gt(r, g)), green_over_blue(hn::Gt(g, b)), red_over_blue(hn::Gt(r, b)) {}

    /// Indexed by the results of the first two comparisons, and if these differ by the third.
    template <class V>
    HWY_INLINE V choose(V both, V green_only_red, V green_only_blue, V red_only_red, V red_only_blue,
                        V neither) const {
        const auto green_only = hn::IfThenElse(red_over_blue, green_only_red, green_only_blue);
        const auto red_only = hn::IfThenElse(red_over_blue, red_only_red, red_only_blue);
        return hn::IfThenElse(red_over_green, hn::IfThenElse(green_over_blue, both, red_only),
                              hn::IfThenElse(green_over_blue, green_only, neither));
    }
    HWY_INLINE hn::Vec<D> most(hn::Vec<D> r, hn::Vec<D> g, hn::Vec<D> b) const {
        return choose(r, g, g, r, b, b);
    }
    HWY_INLINE hn::Vec<D> middle(hn::Vec<D> r, hn::Vec<D> g, hn::Vec<D> b) const {
        return choose(g, r, b, b, r, g);
    }
    HWY_INLINE hn::Vec<D> least(hn::Vec<D> r, hn::Vec<D> g, hn::Vec<D> b) const {
        return choose(b, b, r, g, g, r);
    }
};

/// The middle channel gets the share between the other two that it had before the table.
void restore_middle(const float* const before[3], Block& block) {
    const hn::ScalableTag<float> d;
    float* const plane[3] = {block.plane[0], block.plane[1], block.plane[2]};
    for_each_vector(block, [&](std::size_t i) HWY_ATTR {
        const auto r0 = hn::Load(d, before[0] + i), g0 = hn::Load(d, before[1] + i),
                   b0 = hn::Load(d, before[2] + i);
        const Order<hn::ScalableTag<float>> order(d, r0, g0, b0);
        const auto low = order.least(r0, g0, b0);
        const auto chroma = hn::Sub(order.most(r0, g0, b0), low);
        const auto share = hn::Div(hn::Sub(order.middle(r0, g0, b0), low), chroma);
        const auto zero = hn::Zero(d), one = hn::Set(d, 1.0f);
        const auto part = hn::IfThenElse(hn::Eq(chroma, zero), zero, share);
        const auto r = hn::Load(d, plane[0] + i), g = hn::Load(d, plane[1] + i),
                   b = hn::Load(d, plane[2] + i);
        const auto least = order.least(r, g, b), width = hn::Sub(order.most(r, g, b), least);
        const auto middle = hn::Add(hn::Mul(part, width), least);
        const auto is_red = hn::Ne(order.middle(one, zero, zero), zero);
        const auto is_green = hn::Ne(order.middle(zero, one, zero), zero);
        const auto is_blue = hn::Ne(order.middle(zero, zero, one), zero);
        hn::Store(hn::IfThenElse(is_red, middle, r), d, plane[0] + i);
        hn::Store(hn::IfThenElse(is_green, middle, g), d, plane[1] + i);
        hn::Store(hn::IfThenElse(is_blue, middle, b), d, plane[2] + i);
    });
}

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel {

HWY_EXPORT(restore_middle);

namespace {

struct TableRunner {
    Block& block;

    void operator()(const TableStage& s) const { run_table(s, block); }
    void operator()(const HalfTableStage& s) const { run_half_table(s, block); }
    void operator()(const InverseTableStage& s) const { run_inverse_table(s, block); }
    void operator()(const InverseHalfStage& s) const { run_inverse_half(s, block); }
};

} // namespace

void run_hue_table(const HueTableStage& stage, Block& block) {
    alignas(64) float before[3][BLOCK_PIXELS];
    for (std::size_t c = 0; c < 3; ++c) {
        std::copy(block.plane[c], block.plane[c] + block.padded, before[c]);
    }
    std::visit(TableRunner{block}, stage.table);
    const float* const planes[3] = {before[0], before[1], before[2]};
    HWY_DYNAMIC_DISPATCH(restore_middle)(planes, block);
}

} // namespace pixel
#endif
