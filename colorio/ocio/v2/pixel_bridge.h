#pragma once

#include <optional>
#include <string>

#include "colorio/ocio/types.h"
#include "pixel/ops.h"

namespace ocio {

/// The operations of a processor as plain data, after OpenColorIO's lossless optimizations, if `pixel/` gives
/// OpenColorIO's results for each of them. Otherwise empty, with the reason in `why_not` (may be null):
/// "FixedFunction ACES_RedMod10 is not supported by the SIMD code".
std::optional<pixel::OpChain> translate(const library::ConstProcessorRcPtr& processor, std::string* why_not);
/// The same for the operations of a processor that OpenColorIO has optimized under its lossless flags.
std::optional<pixel::OpChain> translate_operations(const library::GroupTransform& operations,
                                                   std::string& why_not);

/// One operation in words: its description by `pixel/` if it is supported there, else its name in
/// OpenColorIO.
std::string describe(const library::Transform& transform);

} // namespace ocio
