#include <atomic>

#include "colorio/ocio/processor.h"

namespace ocio {

namespace {

std::atomic<bool> fast_path_enabled{true};

} // namespace

void set_fast_path(bool enabled) {
    fast_path_enabled = enabled;
}

bool get_fast_path() {
    return fast_path_enabled;
}

} // namespace ocio
