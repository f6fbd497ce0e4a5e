#pragma once

#include <utility>

#include <epoxy/gl.h>

namespace gl {

/// How epoxy declares a function that makes or deletes names.
using GenerateNames = void (*)(GLsizei count, GLuint* names);
using DeleteNames = void (*)(GLsizei count, const GLuint* names);

/// Owner of one OpenGL name; its context must be current at construction and destruction. Movable.
template <GenerateNames* GENERATE, DeleteNames* DELETE>
class GlObject {
public:
    GlObject() { (*GENERATE)(1, &name); }
    ~GlObject() { (*DELETE)(1, &name); }
    GlObject(GlObject&& other) noexcept : name(std::exchange(other.name, 0)) {}
    GlObject& operator=(GlObject&& other) noexcept {
        std::swap(name, other.name);
        return *this;
    }
    GlObject(const GlObject&) = delete;
    GlObject& operator=(const GlObject&) = delete;

    /// The name, still owned; 0 after a move.
    GLuint get() const { return name; }

private:
    GLuint name = 0;
};

using GlTexture = GlObject<&glGenTextures, &glDeleteTextures>;
using GlBuffer = GlObject<&glGenBuffers, &glDeleteBuffers>;
using GlFramebuffer = GlObject<&glGenFramebuffers, &glDeleteFramebuffers>;
using GlVertexArray = GlObject<&glGenVertexArrays, &glDeleteVertexArrays>;

} // namespace gl
