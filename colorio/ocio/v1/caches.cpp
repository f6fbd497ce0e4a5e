#include "colorio/ocio/types.h"

#include "colorio/ocio/cdl_file.h"
#include "colorio/ocio/v1/file_editions.h"

namespace ocio {

void clear_all_caches() {
    forget_file_editions();
    forget_cdl_files();
}

} // namespace ocio
