#pragma once

#include <vector>

#include "pixel/ops.h"
#include "pixel/stage.h"

/// Turns operations into stages. Every function throws std::invalid_argument for an invalid operation.
namespace pixel {

/// Calls the function below for the type of `op`.
Stage compile(const Op& op);

/// One stage for each operation, except diagonal matrices that are computed by a neighboring stage.
std::vector<Stage> compile(const OpChain& chain);

Stage compile_log(const Log& op);
Stage compile_log_affine(const LogAffine& op);
Stage compile_table(const Lut1D& op);
Stage compile_cube(const Lut3D& op);
Stage compile_curve(const RgbCurve& op);
Stage compile_hue_curve(const HueCurve& op);
Stage compile_exposure(const ExposureContrast& op);
Stage compile_primary(const GradingPrimary& op);
/// True for a primary grading that changes no value.
bool changes_nothing(const GradingPrimary& op);
Stage compile_tone(const GradingTone& op);

} // namespace pixel
