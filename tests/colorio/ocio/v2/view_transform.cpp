#include "tests/colorio/ocio/test_configs.h"

namespace test_configs {

ocio::TransformRcPtr make_view_transform(const char* source, const char* display, const char* view) {
    const auto transform = ocio::library::DisplayViewTransform::Create();
    transform->setSrc(source);
    transform->setDisplay(display);
    transform->setView(view);
    return transform;
}

} // namespace test_configs
