#pragma once

#include <string>

#include "gl/gl_profile.h"

namespace gl {

/// What the OpenGL driver says of itself.
struct GlFacts {
    std::string vendor;   ///< GL_VENDOR
    std::string renderer; ///< GL_RENDERER
    std::string version;  ///< GL_VERSION
};

/// The driver of contexts without a window. Throws diagnostics::Failure (GPU_UNAVAILABLE) without one.
GlFacts get_gl_facts(GlProfile profile);

} // namespace gl
