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
};

/// The text of the LUT, by OpenColorIO's Baker. Version 2 writes the grid; 1.1, which cannot, converts to
/// the target, and throws without one.
std::string bake_lut(const ConstConfigRcPtr& config, const LutBake& bake);

/// Whether OpenColorIO's Baker has the format.
bool can_bake(const std::string& format);

} // namespace ocio
