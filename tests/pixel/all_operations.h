#pragma once

#include <vector>

#include "pixel/ops.h"

namespace pixel_test {

/// Every operation in every style and direction.
std::vector<pixel::Op> all_operations();

} // namespace pixel_test
