#pragma once

#include <string>

#include "colorio/ocio/processor.h"

/// Conversions beyond those between two color spaces and to a view. All throw like `get_processor`.
namespace ocio {

/// The looks of a list ("film, -warm": the second one undone), for pixels in `space`, which they stay in.
ConstProcessorRcPtr get_look_processor(const ConstConfigRcPtr& config, const std::string& space,
                                       const std::string& looks);

/// From what a view shows back to `space`. Throws on OpenColorIO 1.1.
ConstProcessorRcPtr get_inverse_view_processor(const ConstConfigRcPtr& config, const std::string& display,
                                               const std::string& view, const std::string& space);

/// A named transform by itself. Throws on OpenColorIO 1.1, which has none.
ConstProcessorRcPtr get_named_transform_processor(const ConstConfigRcPtr& config, const std::string& name,
                                                  TransformDirection direction);

/// The LUT or transform file at `path`, with linear interpolation.
ConstProcessorRcPtr get_file_processor(const ConstConfigRcPtr& config, const std::string& path,
                                       TransformDirection direction);

} // namespace ocio
