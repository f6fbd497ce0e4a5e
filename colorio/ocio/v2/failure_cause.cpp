#include "colorio/ocio/failure_cause.h"

namespace ocio {

namespace {

/// Determinant of the 3 x 3 part in front of red, green and blue.
double get_determinant(const double (&m)[16]) {
    return m[0] * (m[5] * m[10] - m[6] * m[9]) - m[1] * (m[4] * m[10] - m[6] * m[8]) +
           m[2] * (m[4] * m[9] - m[5] * m[8]);
}

} // namespace

bool is_singular_matrix(const library::Transform& transform) {
    if (const auto* cdl = dynamic_cast<const library::CDLTransform*>(&transform))
        return cdl->getSat() == 0; // Saturation 0 maps every color to gray.
    const auto* matrix = dynamic_cast<const library::MatrixTransform*>(&transform);
    if (!matrix)
        return false;
    double values[16];
    matrix->getMatrix(values);
    return get_determinant(values) == 0;
}

bool knows_space(const ConstConfigRcPtr& config, const std::string& name) {
    return config->getColorSpace(name.c_str()) || config->getNamedTransform(name.c_str());
}

} // namespace ocio
