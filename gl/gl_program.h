#pragma once

#include <string>

#include <epoxy/gl.h>

namespace gl {

/// A linked pair of a vertex and a fragment shader, in the current context. The attribute "corner", if it
/// exists, has index 0.
class GlProgram {
public:
    /// Throws diagnostics::Failure (SHADER_INVALID) with the driver's messages, and the line of the text that
    /// the first of them is about.
    GlProgram(const std::string& vertex_text, const std::string& fragment_text);
    ~GlProgram();
    GlProgram(GlProgram&& other) noexcept;
    GlProgram& operator=(GlProgram&& other) noexcept;

    /// Makes it the program in use.
    void use() const;
    /// Location of a uniform; -1 when the program does not use it.
    GLint get_uniform(const char* name) const;

private:
    GLuint name;
};

} // namespace gl
