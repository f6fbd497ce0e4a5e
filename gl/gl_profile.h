#pragma once

namespace gl {

/// The versions of OpenGL and GLSL of a context.
enum class GlProfile {
    LEGACY, ///< OpenGL 2.1, GLSL 1.20.
    CORE    ///< OpenGL 3.3 core profile, GLSL 3.30.
};

} // namespace gl
