#include "colorio/ocio/library_log.h"

namespace ocio {

/// This library takes no function: what it reports goes to standard error always.
void set_library_log_function(LibraryLogFunction) {}

} // namespace ocio
