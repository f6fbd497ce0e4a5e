#include "gl/gl_facts.h"

#include <epoxy/gl.h>

#include "gl/egl_context.h"

namespace gl {

namespace {

std::string get_text(GLenum name) {
    const GLubyte* text = glGetString(name);
    return text ? reinterpret_cast<const char*>(text) : "";
}

} // namespace

GlFacts get_gl_facts(GlProfile profile) {
    const EglContext context(profile);
    return {get_text(GL_VENDOR), get_text(GL_RENDERER), get_text(GL_VERSION)};
}

} // namespace gl
