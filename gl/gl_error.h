#pragma once

#include <stdexcept>

namespace gl {

/// An error of OpenGL or the window system; its text is for the user.
class GlError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace gl
