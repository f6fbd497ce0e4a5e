#pragma once

#include "colorio/ocio/v2/gpu_lut.h"

namespace ocio {

/// How a 3D LUT is fitted to the colors of a conversion's source.
struct SourceAllocation {
    GpuAllocation allocation;
    bool stated = true; ///< false when the config leaves it open, so that OpenColorIO's own 3D LUTs ignore it
};

/// The allocation of a color space of `config`; null means the source of a named transform, which has none.
/// Version 2 configs often state none, which would confine scene-linear colors to [0, 1]: they get a
/// logarithmic one that reaches from 0 to 256.
SourceAllocation source_allocation(const ConstConfigRcPtr& config, const ConstColorSpaceRcPtr& space);

} // namespace ocio
