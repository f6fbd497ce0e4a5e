#include "colorio/ocio/library_log.h"

namespace ocio {

/// This version has no such feature: its messages always go to standard error.
void set_library_log_function(LibraryLogFunction) {}

} // namespace ocio
