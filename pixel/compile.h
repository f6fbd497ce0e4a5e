#pragma once

#include <vector>

#include "pixel/ops.h"
#include "pixel/stage.h"

/// Turns operations into stages. All of them throw std::invalid_argument when the operation contradicts
/// itself.
namespace pixel {

Stage compile(const Op& op);

/// One stage for each operation, but none for a diagonal matrix that a neighbor carries out.
std::vector<Stage> compile(const OpChain& chain);

Stage compile_log(const Log& op);
Stage compile_log_affine(const LogAffine& op);
Stage compile_table(const Lut1D& op);
Stage compile_cube(const Lut3D& op);
Stage compile_curve(const RgbCurve& op);
Stage compile_exposure(const ExposureContrast& op);
Stage compile_primary(const GradingPrimary& op);
/// True for a primary grading that leaves every value as it is.
bool changes_nothing(const GradingPrimary& op);
Stage compile_tone(const GradingTone& op);

} // namespace pixel
