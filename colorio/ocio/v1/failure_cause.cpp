#include "colorio/ocio/failure_cause.h"

namespace ocio {

bool is_singular_matrix(const library::Transform& transform) {
    if (const auto* cdl = dynamic_cast<const library::CDLTransform*>(&transform))
        return cdl->getSat() == 0; // Saturation 0 maps every color to gray.
    const auto* matrix = dynamic_cast<const library::MatrixTransform*>(&transform);
    if (!matrix)
        return false;
    float m[16];
    float offset[4];
    matrix->getValue(m, offset);
    return m[0] * (m[5] * m[10] - m[6] * m[9]) - m[1] * (m[4] * m[10] - m[6] * m[8]) +
               m[2] * (m[4] * m[9] - m[5] * m[8]) ==
           0;
}

bool knows_space(const ConstConfigRcPtr& config, const std::string& name) {
    return config->getColorSpace(name.c_str()) != nullptr;
}

} // namespace ocio
