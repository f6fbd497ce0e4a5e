#include "colorio/ocio/table_inverse.h"

namespace ocio {

void require_invertible_tables(const library::Processor& processor) {
    const library::GroupTransformRcPtr steps = processor.createGroupTransform();
    for (int i = 0; i < steps->getNumTransforms(); ++i) {
        const library::TransformRcPtr step = steps->getTransform(i);
        const auto table = library::DynamicPtrCast<library::Lut3DTransform>(step);
        if (table && table->getDirection() == TRANSFORM_DIR_INVERSE && table->getGridSize() < 2)
            throw library::Exception("A 3D LUT with a single entry along an edge has no inverse.");
    }
}

} // namespace ocio
