#pragma once

#include <cstddef>

#include "pixel/block.h"
#include "pixel/stage.h"

/// One function per stage, for the best instruction set of the processor. They change the block's planes in
/// place.
namespace pixel {

void run_matrix(const MatrixStage& stage, Block& block);
void run_diagonal(const DiagonalStage& stage, Block& block);
void run_range(const RangeStage& stage, Block& block);
void run_power(const PowerStage& stage, Block& block);
void run_toe(const ToeStage& stage, Block& block);
void run_cdl(const CdlStage& stage, Block& block);
void run_log(const LogStage& stage, Block& block);
void run_exp(const ExpStage& stage, Block& block);
void run_table(const TableStage& stage, Block& block);
void run_half_table(const HalfTableStage& stage, Block& block);
void run_inverse_table(const InverseTableStage& stage, Block& block);
void run_inverse_half(const InverseHalfStage& stage, Block& block);
void run_hue_table(const HueTableStage& stage, Block& block);
void run_cube(const CubeStage& stage, Block& block);
void run_inverse_cube(const InverseCubeStage& stage, Block& block);
void run_curve(const CurveStage& stage, Block& block);
void run_hue_curve(const HueCurveStage& stage, Block& block);
void run_sequence(const SequenceStage& stage, Block& block);
void run_exposure(const ExposureStage& stage, Block& block);
void run_primary(const PrimaryStage& stage, Block& block);

/// The functions for single pixels (see PixelKernel in stage.h), for the instruction set in use. Stages of
/// other types run on a block of one pixel.
PixelKernel pixel_kernel(const MatrixStage&);
PixelKernel pixel_kernel(const DiagonalStage&);
PixelKernel pixel_kernel(const RangeStage&);
PixelKernel pixel_kernel(const PowerStage&);
PixelKernel pixel_kernel(const ToeStage&);
PixelKernel pixel_kernel(const CdlStage&);
PixelKernel pixel_kernel(const LogStage&);
PixelKernel pixel_kernel(const ExpStage&);
PixelKernel pixel_kernel(const TableStage&);
PixelKernel pixel_kernel(const HalfTableStage&);
PixelKernel pixel_kernel(const InverseTableStage&);
PixelKernel pixel_kernel(const InverseHalfStage&);
PixelKernel pixel_kernel(const CubeStage&);

/// Copies `block.count` gapless pixels of 3 or 4 channels into the block's own planes. The order of the
/// pixels within a plane depends on the instruction set. With three channels alpha is 0.
void unpack(const float* pixels, std::size_t channels, Block& block);
/// The reverse of `unpack`.
void pack(Block& block, std::size_t channels, float* pixels);

/// Neighboring pixels of planes.
struct PlanePiece {
    std::ptrdiff_t offset;  ///< floats from the start of each plane
    std::size_t at, length; ///< floats from the start of the block's planes, and count
};

/// Copies pixels of the first `channels` planes into a block's own planes.
void take(const float* const planes[4], std::size_t channels, const PlanePiece& piece, Block& block);
/// The reverse of `take`.
void give(Block& block, std::size_t channels, const PlanePiece& piece, float* const planes[4]);

} // namespace pixel
