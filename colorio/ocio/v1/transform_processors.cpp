#include "colorio/ocio/transform_processors.h"

#include "colorio/ocio/error.h"

namespace ocio {

ConstProcessorRcPtr get_inverse_view_processor(const ConstConfigRcPtr&, const std::string& display,
                                               const std::string& view, const std::string&) {
    throw_error(diagnostics::Code::CONVERSION_IMPOSSIBLE,
                "OpenColorIO 1.1 cannot invert views; version 2 is required", display + "." + view);
}

ConstProcessorRcPtr get_named_transform_processor(const ConstConfigRcPtr&, const std::string& name,
                                                  TransformDirection) {
    throw_error(diagnostics::Code::CONVERSION_IMPOSSIBLE,
                "OpenColorIO 1.1 has no named transforms; version 2 is required", name);
}

} // namespace ocio
