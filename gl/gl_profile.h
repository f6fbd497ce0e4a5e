#pragma once

namespace gl {

/// Which OpenGL, and with it which GLSL, a context speaks.
enum class GlProfile {
    LEGACY, ///< OpenGL 2.1, GLSL 1.20.
    CORE    ///< OpenGL 3.3 core profile, GLSL 3.30.
};

} // namespace gl
