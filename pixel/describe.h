#pragma once

#include <string>

#include "pixel/ops.h"

namespace pixel {

/// One operation in words and numbers, without the entries of LUTs: "1D LUT of 4101 entries, one curve,
/// inverse".
std::string describe_op(const Op& op);

} // namespace pixel
