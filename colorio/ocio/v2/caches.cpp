#include "colorio/ocio/types.h"

#include "colorio/ocio/cdl_file.h"
#include "colorio/ocio/guarded.h"

namespace ocio {

void clear_all_caches() {
    guarded([] {
        library::ClearAllCaches();
        forget_cdl_files();
    });
}

} // namespace ocio
