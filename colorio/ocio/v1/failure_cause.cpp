#include "colorio/ocio/failure_cause.h"

#include "colorio/ocio/singular_parts.h"

namespace ocio {

bool is_singular(const library::MatrixTransform& matrix) {
    float m[16];
    float offset[4];
    matrix.getValue(m, offset);
    return is_singular(m);
}

bool knows_space(const ConstConfigRcPtr& config, const std::string& name) {
    return config->getColorSpace(name.c_str()) != nullptr;
}

} // namespace ocio
