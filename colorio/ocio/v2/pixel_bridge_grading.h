#pragma once

#include "colorio/ocio/types.h"
#include "pixel/ops.h"

/// Gradings and fixed functions of OpenColorIO as operations of `pixel/`. Throw NotKnown for unsupported
/// ones.
namespace ocio {

pixel::Op translate_op(const library::FixedFunctionTransform& t);
pixel::Op translate_op(const library::ExposureContrastTransform& t);
pixel::Op translate_op(const library::GradingPrimaryTransform& t);
pixel::Op translate_op(const library::GradingRGBCurveTransform& t);
pixel::Op translate_op(const library::GradingToneTransform& t);
#if OCIO_VERSION_MINOR >= 5
pixel::Op translate_op(const library::GradingHueCurveTransform& t);
#endif

} // namespace ocio
