#include "colorio/ocio/transform.h"

#include "colorio/ocio/guarded.h"

namespace ocio {

CDLTransformRcPtr create_CDL_transform_from_file(const char* path, const char* cccid) {
    return guarded([&] {
        const CDLTransformRcPtr shared = library::CDLTransform::CreateFromFile(path, cccid);
        return std::dynamic_pointer_cast<library::CDLTransform>(shared->createEditableCopy());
    });
}

std::vector<CDLTransformRcPtr> create_CDL_transforms_from_file(const char* path) {
    return guarded([&] {
        const GroupTransformRcPtr group = library::CDLTransform::CreateGroupFromFile(path);
        std::vector<CDLTransformRcPtr> corrections;
        for (int i = 0; i < group->getNumTransforms(); ++i) {
            const TransformRcPtr copy = group->getTransform(i)->createEditableCopy();
            if (CDLTransformRcPtr correction = std::dynamic_pointer_cast<library::CDLTransform>(copy))
                corrections.push_back(std::move(correction));
        }
        return corrections;
    });
}

} // namespace ocio
