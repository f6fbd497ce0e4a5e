#pragma once

#include <string>

#include <epoxy/gl.h>

namespace gl {

/// A linked pair of a vertex and a fragment shader. The attribute "corner", if there is one, has index 0.
class GlProgram {
public:
    /// Throws GlError with the driver's words and the lines of the text that they speak of.
    GlProgram(const std::string& vertex_text, const std::string& fragment_text);
    ~GlProgram();
    GlProgram(GlProgram&& other) noexcept;
    GlProgram& operator=(GlProgram&& other) noexcept;

    void use() const;
    /// Location of a uniform; -1 when the program has no use for it.
    GLint get_uniform(const char* name) const;

private:
    GLuint name;
};

} // namespace gl
