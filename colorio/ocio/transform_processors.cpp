#include "colorio/ocio/transform_processors.h"

#include "colorio/ocio/error.h"
#include "colorio/ocio/guarded.h"
#include "colorio/ocio/transform.h"

namespace ocio {

ConstProcessorRcPtr get_look_processor(const ConstConfigRcPtr& config, const std::string& space,
                                       const std::string& looks) {
    const library::LookTransformRcPtr transform = library::LookTransform::Create();
    transform->setSrc(space.c_str());
    transform->setDst(space.c_str());
    transform->setLooks(looks.c_str());
    return get_processor(config, transform);
}

ConstProcessorRcPtr get_file_processor(const ConstConfigRcPtr& config, const std::string& path,
                                       TransformDirection direction) {
    const FileTransformRcPtr transform = create_file_transform();
    set_src(transform, path.c_str());
    set_interpolation(transform, INTERP_LINEAR);
    transform->setDirection(direction);
    return get_processor(config, transform);
}

} // namespace ocio
