#include "colorio/ocio/failure_cause.h"

#include "colorio/ocio/singular_parts.h"

namespace ocio {

bool is_singular(const library::MatrixTransform& matrix) {
    double m[16];
    matrix.getMatrix(m);
    return is_singular(m);
}

void require_invertible_tables(const library::Processor& processor) {
    const library::GroupTransformRcPtr steps = processor.createGroupTransform();
    for (int i = 0; i < steps->getNumTransforms(); ++i) {
        const library::TransformRcPtr step = steps->getTransform(i);
        const auto table = library::DynamicPtrCast<library::Lut3DTransform>(step);
        if (table && table->getDirection() == TRANSFORM_DIR_INVERSE && table->getGridSize() < 2)
            throw library::Exception("A 3D LUT with a single entry along an edge has no inverse.");
    }
}

bool knows_space(const ConstConfigRcPtr& config, const std::string& name) {
    return config->getColorSpace(name.c_str()) || config->getNamedTransform(name.c_str());
}

} // namespace ocio
