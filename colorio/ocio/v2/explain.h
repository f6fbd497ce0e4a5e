#pragma once

#include <array>

#include "colorio/ocio/explanation.h"
#include "colorio/ocio/types.h"
#include "colorio/ocio/v2/evaluator.h"

namespace ocio {

/// The operations of a `processor` that leaves colors as they are.
Explanation explain_nothing(const library::ConstProcessorRcPtr& processor);

/// How `processor` converts pixels by way of its evaluator, under these flags where that is OpenColorIO's.
Explanation explain(const library::ConstProcessorRcPtr& processor, const Evaluator& evaluator,
                    library::OptimizationFlags optimization, const std::array<float, 4>& rgba);

} // namespace ocio
