#pragma once

#include <OpenColorIO/OpenColorIO.h>

/// The interface to OpenColorIO: the rest of the module calls only the functions of this folder. They have
/// the names of OpenColorIO's 1.x interface and behave like it with every version. Errors are thrown as
/// `ocio::Exception` unless a function says otherwise.
namespace ocio {

namespace library = OCIO_NAMESPACE;

using library::ColorSpaceRcPtr;
using library::ConfigRcPtr;
using library::ConstColorSpaceRcPtr;
using library::ConstConfigRcPtr;
using library::ConstTransformRcPtr;
using library::Exception;
using library::TransformRcPtr;

using library::Allocation;
using library::ALLOCATION_LG2;
using library::ALLOCATION_UNIFORM;
using library::BIT_DEPTH_F32;
using library::BitDepth;
using library::COLORSPACE_DIR_FROM_REFERENCE;
using library::COLORSPACE_DIR_TO_REFERENCE;
using library::ColorSpaceDirection;
using library::INTERP_LINEAR;
using library::Interpolation;
using library::TRANSFORM_DIR_FORWARD;
using library::TRANSFORM_DIR_INVERSE;
using library::TransformDirection;

using library::ROLE_COLOR_PICKING;
using library::ROLE_COLOR_TIMING;
using library::ROLE_COMPOSITING_LOG;
using library::ROLE_DATA;
using library::ROLE_DEFAULT;
using library::ROLE_MATTE_PAINT;
using library::ROLE_REFERENCE;
using library::ROLE_SCENE_LINEAR;
using library::ROLE_TEXTURE_PAINT;

/// Version of OpenColorIO in use, for example "2.1.2".
const char* get_version();

/// Clears OpenColorIO's caches of LUTs, CDLs and processors, so that edited files are read again. Existing
/// processors are not affected. On OpenColorIO 1.x the old content stays in memory.
void clear_all_caches();

} // namespace ocio
