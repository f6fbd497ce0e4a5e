#include "colorio/ocio/transform.h"

namespace ocio {

void set_slope(const CDLTransformRcPtr& transform, const float rgb[3]) {
    transform->setSlope(rgb);
}

void set_offset(const CDLTransformRcPtr& transform, const float rgb[3]) {
    transform->setOffset(rgb);
}

void set_power(const CDLTransformRcPtr& transform, const float rgb[3]) {
    transform->setPower(rgb);
}

void set_sat(const CDLTransformRcPtr& transform, float saturation) {
    transform->setSat(saturation);
}

void get_slope(const ConstCDLTransformRcPtr& transform, float rgb[3]) {
    transform->getSlope(rgb);
}

void get_offset(const ConstCDLTransformRcPtr& transform, float rgb[3]) {
    transform->getOffset(rgb);
}

void get_power(const ConstCDLTransformRcPtr& transform, float rgb[3]) {
    transform->getPower(rgb);
}

float get_sat(const ConstCDLTransformRcPtr& transform) {
    return transform->getSat();
}

int get_size(const library::GroupTransform& group) {
    return group.size();
}

void push_back(const GroupTransformRcPtr& group, const TransformRcPtr& transform) {
    group->push_back(transform);
}

} // namespace ocio
