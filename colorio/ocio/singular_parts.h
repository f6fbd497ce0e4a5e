#pragma once

#include <optional>
#include <string>

#include "colorio/ocio/conversion_check.h"
#include "colorio/ocio/types.h"
#include "diagnostics/diagnostic.h"

namespace ocio {

/// True when the 3 x 3 part of a row-major 4 x 4 matrix, which converts red, green and blue, has no inverse.
template <class Number>
bool is_singular(const Number (&m)[16]) {
    return m[0] * (m[5] * m[10] - m[6] * m[9]) - m[1] * (m[4] * m[10] - m[6] * m[8]) +
               m[2] * (m[4] * m[9] - m[5] * m[8]) ==
           0;
}

/// `is_singular` of the transform's coefficients; one implementation per version of OpenColorIO.
bool is_singular(const library::MatrixTransform& matrix);

/// Error about a transform that has no inverse: a matrix, or a CDL that loses colors. Empty for others. It
/// names `owner`, which the transform belongs to; null for none.
std::optional<diagnostics::Diagnostic> find_singular_part(const TransformRcPtr& transform,
                                                          const GraphNode* owner);

/// Error about a file that is applied in the direction in which it does not exist: that of a singular matrix,
/// or of a LUT that OpenColorIO cannot invert. Empty if there is none.
std::optional<diagnostics::Diagnostic> find_singular_file(const ConstConfigRcPtr& config,
                                                          const ConstTransformRcPtr& conversion,
                                                          const ConversionParts& parts);

} // namespace ocio
