#pragma once

#include <string>

#include "colorio/ocio/lut_bake.h"

namespace ocio {

/// Runs OpenColorIO's Baker on color spaces of `config`, which may be other ones than the bake names.
/// `shaper` is empty for none.
std::string run_baker(const ConstConfigRcPtr& config, const LutBake& bake, const std::string& source,
                      const std::string& shaper, const std::string& target);

} // namespace ocio
