#pragma once

#include <utility>

#include <epoxy/gl.h>

namespace gl {

/// Owner of one OpenGL name; its context must be current at construction and destruction. Movable.
template <void (*GENERATE)(GLuint&), void (*DELETE)(GLuint)>
class GlObject {
public:
    GlObject() { GENERATE(name); }
    ~GlObject() { DELETE(name); }
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

namespace gl_object {

inline void generate_texture(GLuint& name) {
    glGenTextures(1, &name);
}
inline void delete_texture(GLuint name) {
    glDeleteTextures(1, &name);
}
inline void generate_buffer(GLuint& name) {
    glGenBuffers(1, &name);
}
inline void delete_buffer(GLuint name) {
    glDeleteBuffers(1, &name);
}
inline void generate_framebuffer(GLuint& name) {
    glGenFramebuffers(1, &name);
}
inline void delete_framebuffer(GLuint name) {
    glDeleteFramebuffers(1, &name);
}
inline void generate_vertex_array(GLuint& name) {
    glGenVertexArrays(1, &name);
}
inline void delete_vertex_array(GLuint name) {
    glDeleteVertexArrays(1, &name);
}

} // namespace gl_object

using GlTexture = GlObject<gl_object::generate_texture, gl_object::delete_texture>;
using GlBuffer = GlObject<gl_object::generate_buffer, gl_object::delete_buffer>;
using GlFramebuffer = GlObject<gl_object::generate_framebuffer, gl_object::delete_framebuffer>;
using GlVertexArray = GlObject<gl_object::generate_vertex_array, gl_object::delete_vertex_array>;

} // namespace gl
