#include "colorio/ocio/lut_bake.h"

#include "colorio/ocio/bake_run.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/guarded.h"

namespace ocio {

std::string bake_lut(const ConstConfigRcPtr& config, const LutBake& bake) {
    if (bake.target.empty())
        throw_error(diagnostics::Code::CONVERSION_IMPOSSIBLE,
                    "OpenColorIO 1.1 can only bake conversions between two color spaces in this format; "
                    "version 2 is required");
    return guarded([&] { return run_baker(config, bake, bake.source, bake.shaper, bake.target); });
}

} // namespace ocio
