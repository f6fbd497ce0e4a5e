#include "pixel/stage.h"

#include <algorithm>
#include <type_traits>

#include "pixel/kernels.h"

namespace pixel {

namespace {

struct Runner {
    Block& block;

    void operator()(const MatrixStage& s) { run_matrix(s, block); }
    void operator()(const DiagonalStage& s) { run_diagonal(s, block); }
    void operator()(const RangeStage& s) { run_range(s, block); }
    void operator()(const PowerStage& s) { run_power(s, block); }
    void operator()(const ToeStage& s) { run_toe(s, block); }
    void operator()(const CdlStage& s) { run_cdl(s, block); }
    void operator()(const LogStage& s) { run_log(s, block); }
    void operator()(const ExpStage& s) { run_exp(s, block); }
    void operator()(const TableStage& s) { run_table(s, block); }
    void operator()(const HalfTableStage& s) { run_half_table(s, block); }
    void operator()(const InverseTableStage& s) { run_inverse_table(s, block); }
    void operator()(const InverseHalfStage& s) { run_inverse_half(s, block); }
    void operator()(const CubeStage& s) { run_cube(s, block); }
};

/// For stages without a kernel for one pixel.
template <class S>
void run_on_block_of_one(const void* stage, float* rgba) {
    Block block;
    block.count = 1;
    block.padded = round_up_to_lanes(1);
    for (std::size_t c = 0; c < 4; ++c) {
        std::fill(block.plane[c], block.plane[c] + block.padded, rgba[c]);
    }
    Runner{block}(*static_cast<const S*>(stage));
    for (std::size_t c = 0; c < 4; ++c) {
        rgba[c] = block.plane[c][0];
    }
}

struct PixelStepMaker {
    template <class S>
    PixelStep operator()(const S& stage) {
        return {run_on_block_of_one<S>, &stage};
    }
};

} // namespace

PixelStep pixel_step(const Stage& stage) {
    return std::visit(PixelStepMaker{}, stage);
}

void run(const Stage& stage, Block& block) {
    std::visit(Runner{block}, stage);
}

} // namespace pixel
