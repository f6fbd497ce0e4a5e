#include "colorio/ocio/v2/source_allocation.h"

#include <cmath>
#include <string_view>

#include "colorio/ocio/color_space.h"
#include "colorio/ocio/config.h"

namespace ocio {

namespace {

/// The offset puts black exactly at the lower end of the LUT.
GpuAllocation linear_light_allocation() {
    return {ALLOCATION_LG2, {-10.0f, 8.0f, std::exp2(-10.0f)}};
}

bool holds_linear_light(const library::ColorSpace& space) {
    const std::string_view encoding = space.getEncoding();
    return encoding == "scene-linear" || encoding == "display-linear";
}

} // namespace

SourceAllocation source_allocation(const ConstConfigRcPtr& config, const ConstColorSpaceRcPtr& space) {
    if (!space)
        return {};
    GpuAllocation allocation{get_allocation(space), {}};
    allocation.variables.resize(static_cast<std::size_t>(get_allocation_num_vars(space)));
    if (!allocation.variables.empty())
        get_allocation_vars(space, allocation.variables.data());
    const bool stated =
        !allocation.variables.empty() || get_major_version(config) == 1 || !holds_linear_light(*space);
    return {stated ? allocation : linear_light_allocation(), stated};
}

} // namespace ocio
