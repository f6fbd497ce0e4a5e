#pragma once

#include <string>
#include <vector>

#include "workflow/color_difference.h"
#include "workflow/conversion.h"

namespace workflow {

/// A conversion to be written as a LUT.
struct BakeRequest {
    ConversionRequest conversion;
    std::string path;    ///< The extension selects the format: .cube, .spi3d, .csp, .clf or .3dl.
    int size = 33;       ///< Colors along each side of the 3D LUT, 2 to 129.
    std::string shaper;  ///< Color space in which its colors are evenly spaced; empty for the source.
    int shaper_size = 0; ///< Entries of the 1D LUT into the shaper; 0 for the default of the format.
};

/// What was written, and how far it is from the conversion that it replaces.
struct BakeReport {
    std::string source;
    std::string destination;
    std::string writer;         ///< "OpenColorIO (resolve_cube)" or "colorio".
    std::string domain;         ///< The colors compared: "0 to 1 in ACEScct (-0.0069 to 223 in ACEScg)".
    ColorDifference difference; ///< The LUT read back, with linear interpolation, against the CPU.
    ColorDifference grays;      ///< The same for grays alone, evenly spaced like the 3D LUT.
    diagnostics::Diagnostics notes;
};

/// The extensions that `bake_lut` takes, without the dot.
std::vector<std::string> get_bake_extensions();

/// Writes the LUT, reads it back and measures it. A LUT that OpenColorIO cannot read leaves the file as it
/// was. Throws diagnostics::Failure.
BakeReport bake_lut(const Session& session, const BakeRequest& request);

} // namespace workflow
