#include "colorio/ocio/v2/plain_conversion.h"

namespace ocio {

namespace {

constexpr int MOST_MEMBERS = 16;

/// True for transforms of the types that do not refer to anything. Others, also those of newer libraries,
/// count as referring.
bool stands_alone(const library::Transform& transform) {
    switch (transform.getTransformType()) {
    case library::TRANSFORM_TYPE_ALLOCATION:
    case library::TRANSFORM_TYPE_BUILTIN:
    case library::TRANSFORM_TYPE_CDL:
    case library::TRANSFORM_TYPE_EXPONENT:
    case library::TRANSFORM_TYPE_EXPONENT_WITH_LINEAR:
    case library::TRANSFORM_TYPE_EXPOSURE_CONTRAST:
    case library::TRANSFORM_TYPE_FIXED_FUNCTION:
    case library::TRANSFORM_TYPE_LOG:
    case library::TRANSFORM_TYPE_LOG_AFFINE:
    case library::TRANSFORM_TYPE_LOG_CAMERA:
    case library::TRANSFORM_TYPE_LUT1D:
    case library::TRANSFORM_TYPE_LUT3D:
    case library::TRANSFORM_TYPE_MATRIX:
    case library::TRANSFORM_TYPE_RANGE:
        return true;
    default:
        return false;
    }
}

bool members_stand_alone(const library::GroupTransform& group) {
    const int count = group.getNumTransforms();
    for (int i = 0; i < count; ++i)
        if (!stands_alone(*group.getTransform(i)))
            return false;
    return count <= MOST_MEMBERS;
}

bool is_plain(const ConstTransformRcPtr& transform) {
    if (!transform || stands_alone(*transform))
        return true;
    return transform->getTransformType() == library::TRANSFORM_TYPE_GROUP &&
           members_stand_alone(static_cast<const library::GroupTransform&>(*transform));
}

bool is_plain(const library::ColorSpace& space) {
    return is_plain(space.getTransform(COLORSPACE_DIR_TO_REFERENCE)) &&
           is_plain(space.getTransform(COLORSPACE_DIR_FROM_REFERENCE));
}

} // namespace

bool is_plain_conversion(const library::ColorSpace& source, const library::ColorSpace& destination) {
    return source.getReferenceSpaceType() == destination.getReferenceSpaceType() && is_plain(source) &&
           is_plain(destination);
}

} // namespace ocio
