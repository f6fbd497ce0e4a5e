#include "colorio/ocio/failure_cause.h"

#include "colorio/ocio/singular_parts.h"

namespace ocio {

bool is_singular(const library::MatrixTransform& matrix) {
    double m[16];
    matrix.getMatrix(m);
    return is_singular(m);
}

bool knows_space(const ConstConfigRcPtr& config, const std::string& name) {
    return config->getColorSpace(name.c_str()) || config->getNamedTransform(name.c_str());
}

} // namespace ocio
