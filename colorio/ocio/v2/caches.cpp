#include "colorio/ocio/types.h"

#include "colorio/ocio/cdl_file.h"

namespace ocio {

void clear_all_caches() {
    library::ClearAllCaches();
    forget_cdl_files();
}

} // namespace ocio
