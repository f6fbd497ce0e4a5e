#pragma once

#include <memory>

#include "gl/gl_profile.h"

namespace gl {

/// An OpenGL context without a window, current on the thread that made it until its destruction, which makes
/// the context before it current again. Contexts of one thread must be destroyed in reverse order.
class EglContext {
public:
    /// Prefers a display without devices or windows, then the first device that has a driver. Throws
    /// diagnostics::Failure (GPU_UNAVAILABLE) when EGL is missing or does not support the profile.
    explicit EglContext(GlProfile profile);
    ~EglContext();
    EglContext(const EglContext&) = delete;
    EglContext& operator=(const EglContext&) = delete;

    /// Makes it current on the calling thread. Throws diagnostics::Failure.
    void make_current();

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace gl
