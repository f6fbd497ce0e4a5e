#include "colorio/ocio/types.h"

namespace ocio {

void clear_all_caches() {
    library::ClearAllCaches();
}

} // namespace ocio
