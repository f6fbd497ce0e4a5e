#include "colorio/ocio/transform.h"

namespace ocio {

FileTransformRcPtr create_file_transform() {
    return library::FileTransform::Create();
}

void set_src(const FileTransformRcPtr& transform, const char* path) {
    transform->setSrc(path);
}

void set_interpolation(const FileTransformRcPtr& transform, Interpolation interpolation) {
    transform->setInterpolation(interpolation);
}

CDLTransformRcPtr create_CDL_transform() {
    return library::CDLTransform::Create();
}

void set_id(const CDLTransformRcPtr& transform, const char* id) {
    transform->setID(id);
}

void set_direction(const CDLTransformRcPtr& transform, TransformDirection direction) {
    transform->setDirection(direction);
}

const char* get_id(const ConstCDLTransformRcPtr& transform) {
    return transform->getID();
}

GroupTransformRcPtr create_group_transform() {
    return library::GroupTransform::Create();
}

} // namespace ocio
