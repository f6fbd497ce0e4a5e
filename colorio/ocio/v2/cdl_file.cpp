#include "colorio/ocio/cdl_file.h"

namespace ocio {

std::vector<CDLTransformRcPtr> read_corrections(const std::string& path, bool again) {
    if (again)
        library::ClearAllCaches();
    std::vector<CDLTransformRcPtr> corrections;
    const GroupTransformRcPtr group = library::CDLTransform::CreateGroupFromFile(path.c_str());
    for (int i = 0; i < group->getNumTransforms(); ++i)
        if (auto correction = library::DynamicPtrCast<library::CDLTransform>(group->getTransform(i)))
            corrections.push_back(std::move(correction));
    return corrections;
}

} // namespace ocio
