#pragma once

#include <array>

#include "colorio/ocio/explanation.h"
#include "colorio/ocio/types.h"
#include "colorio/ocio/v2/fast_path.h"

namespace ocio {

/// The operations of a `processor` that leaves colours as they are.
Explanation explain_nothing(const library::ConstProcessorRcPtr& processor);

/// How `processor` converts pictures, as optimised by these flags where the library does it, or by way of
/// `fast_path` where that has a program.
Explanation explain(const library::ConstProcessorRcPtr& processor, const FastPath& fast_path,
                    library::OptimizationFlags optimization, const std::array<float, 4>& rgba);

} // namespace ocio
