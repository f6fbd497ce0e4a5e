#pragma once

#include "colorio/color_io_export.h"
#include "host/core/core_array.h"
#include "host/core/core_string.h"

/// Writes conversions as LUTs in the formats of OpenColorIO's Baker: for programs; not needed by hosts. Main
/// thread only.
class COLORIO_API ColorIOLutWriter {
public:
    /// What to write. Names are those of the active config, without families.
    struct Bake {
        CoreString format; ///< OpenColorIO's name of the format: "cinespace".
        CoreString source; ///< Color space that the LUT takes.
        CoreString shaper; ///< Color space in which its 3D part is evenly spaced; empty for the source.
        CoreString
            target; ///< Color space of the result; empty when there is none. Only OpenColorIO 1.1 needs it.
        /// Red, green and blue of the results for an evenly spaced grid of `size` colors a side in the
        /// shaper, red fastest. Not used with OpenColorIO 1.1.
        CoreArray<float> grid;
        /// Red, green and blue in the source for evenly spaced levels of the shaper from 0 to 1: the 1D part
        /// is the inverse, each channel by itself. Empty without a shaper; not used with OpenColorIO 1.1.
        CoreArray<float> curve;
        int size = 0;        ///< Colors a side.
        int shaper_size = 0; ///< Entries of the 1D part; 0 for the format's own.
    };

    /// The text of the LUT; empty when OpenColorIO cannot write it, which is logged and reported.
    static CoreString write(const Bake& bake);
    /// Whether the OpenColorIO in use writes the format.
    static bool has_format(const CoreString& format);
};
