#include "pixel/stage.h"

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

} // namespace

void run(const Stage& stage, Block& block) {
    std::visit(Runner{block}, stage);
}

} // namespace pixel
