#pragma once

#include <string>
#include <vector>

#include "colorio/ocio/types.h"

namespace ocio {

/// A conversion to be written as a LUT.
struct LutBake {
    std::string format; ///< OpenColorIO's name: "cinespace".
    std::string source; ///< Color space that the LUT takes.
    std::string shaper; ///< Color space that the LUT's 3D part is evenly spaced in; empty for the source.
    std::string target; ///< Color space of the result; empty when there is none, as that of a view.
    /// The results: for an evenly spaced grid of `size` colors a side in the shaper space, red fastest.
    std::vector<float> grid;
    int size = 0;        ///< Colors a side.
    int shaper_size = 0; ///< Entries of the 1D part; 0 for the format's own.
    /// Red, green and blue in the source for evenly spaced levels of the shaper from 0 to 1, each channel by
    /// itself; empty without a shaper. Only for version 2.
    std::vector<float> curve;
};

/// The text of the LUT, by OpenColorIO's Baker. Version 2 writes the grid, and the inverse of the curve as
/// its 1D part; 1.1, which cannot, converts to the shaper and the target, and throws without a target.
std::string bake_lut(const ConstConfigRcPtr& config, const LutBake& bake);

/// Whether OpenColorIO's Baker has the format.
bool can_bake(const std::string& format);

} // namespace ocio
