#pragma once

#include <stdexcept>

namespace gl {

/// Something that OpenGL or the window system refused, in words for the user.
class GlError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace gl
