#include "colorio/ocio/types.h"

namespace ocio {

const char* get_version() {
    return library::GetVersion();
}

} // namespace ocio
