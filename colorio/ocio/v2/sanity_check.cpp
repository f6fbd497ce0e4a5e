#include "colorio/ocio/config.h"
#include "colorio/ocio/guarded.h"

namespace ocio {

void sanity_check(const ConstConfigRcPtr& config) {
    guarded([&] { create_editable_copy(config)->validate(); });
}

} // namespace ocio
