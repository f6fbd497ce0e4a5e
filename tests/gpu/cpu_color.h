#pragma once

#include "colorio/color_io_converter.h"
#include "tests/gpu/lattice.h"

/// What a converter makes of a pixel on the CPU, and how firm that is.

Lattice::Rgb convert_on_cpu(const ColorIOConverter& converter, const float* rgba);

/// True when something on the way from the pixel to its result is too large for a float; what comes of that
/// is left to the driver.
bool overflows(const ColorIOConverter& converter, const float* rgba);

/// How far the CPU's result moves when the pixel moves by some roundings of a float: far where values cancel
/// and their logarithm is taken, for instance. Roundings of shader and CPU may add up to that.
Lattice::Rgb get_unsteadiness(const ColorIOConverter& converter, const float* rgba,
                              const Lattice::Rgb& converted);
