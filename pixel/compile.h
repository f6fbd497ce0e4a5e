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

} // namespace pixel
