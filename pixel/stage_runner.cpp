#include "pixel/stage.h"

#include <type_traits>

#include "pixel/kernels.h"
#include "pixel/vector_target.h"

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
    void operator()(const HueTableStage& s) { run_hue_table(s, block); }
    void operator()(const CubeStage& s) { run_cube(s, block); }
    void operator()(const InverseCubeStage& s) { run_inverse_cube(s, block); }
    void operator()(const FunctionStage& s) { s.run(s, block); }
    void operator()(const CurveStage& s) { run_curve(s, block); }
    void operator()(const HueCurveStage& s) { run_hue_curve(s, block); }
    void operator()(const SequenceStage& s) { run_sequence(s, block); }
    void operator()(const ExposureStage& s) { run_exposure(s, block); }
    void operator()(const PrimaryStage& s) { run_primary(s, block); }
};

/// For stages without a kernel for one pixel.
template <class S>
PixelKernel pixel_kernel(const S&) {
    return [](const void* stage, float* rgba) {
        run_on_block_of_one(rgba, [stage](Block& block) { Runner{block}(*static_cast<const S*>(stage)); });
    };
}

} // namespace

PixelFunction pixel_step(const Stage& stage) {
    vector_target(); // The instruction set must have been chosen before pointers to its functions are taken.
    return std::visit([](const auto& s) { return PixelFunction{pixel_kernel(s), &s}; }, stage);
}

void run(const Stage& stage, Block& block) {
    std::visit(Runner{block}, stage);
}

} // namespace pixel
