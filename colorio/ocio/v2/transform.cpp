#include "colorio/ocio/transform.h"

#include <array>

namespace ocio {

namespace {

std::array<double, 3> widen(const float rgb[3]) {
    return {rgb[0], rgb[1], rgb[2]};
}

void narrow(const std::array<double, 3>& from, float rgb[3]) {
    for (std::size_t i = 0; i < from.size(); ++i)
        rgb[i] = static_cast<float>(from[i]);
}

} // namespace

void set_slope(const CDLTransformRcPtr& transform, const float rgb[3]) {
    transform->setSlope(widen(rgb).data());
}

void set_offset(const CDLTransformRcPtr& transform, const float rgb[3]) {
    transform->setOffset(widen(rgb).data());
}

void set_power(const CDLTransformRcPtr& transform, const float rgb[3]) {
    transform->setPower(widen(rgb).data());
}

void set_sat(const CDLTransformRcPtr& transform, float saturation) {
    transform->setSat(saturation);
}

void get_slope(const ConstCDLTransformRcPtr& transform, float rgb[3]) {
    std::array<double, 3> wide{};
    transform->getSlope(wide.data());
    narrow(wide, rgb);
}

void get_offset(const ConstCDLTransformRcPtr& transform, float rgb[3]) {
    std::array<double, 3> wide{};
    transform->getOffset(wide.data());
    narrow(wide, rgb);
}

void get_power(const ConstCDLTransformRcPtr& transform, float rgb[3]) {
    std::array<double, 3> wide{};
    transform->getPower(wide.data());
    narrow(wide, rgb);
}

float get_sat(const ConstCDLTransformRcPtr& transform) {
    return static_cast<float>(transform->getSat());
}

int get_size(const library::GroupTransform& group) {
    return group.getNumTransforms();
}

void push_back(const GroupTransformRcPtr& group, const TransformRcPtr& transform) {
    group->appendTransform(transform);
}

} // namespace ocio
