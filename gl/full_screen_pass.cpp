#include "gl/full_screen_pass.h"

namespace gl {

namespace {

/// One triangle that covers the clip space's square.
constexpr float CORNERS[] = {-1, -1, 3, -1, -1, 3};

} // namespace

FullScreenPass::FullScreenPass(GlProfile profile) {
    if (profile == GlProfile::CORE)
        vertex_array.emplace();
    glBindBuffer(GL_ARRAY_BUFFER, corners.get());
    glBufferData(GL_ARRAY_BUFFER, sizeof CORNERS, CORNERS, GL_STATIC_DRAW);
}

void FullScreenPass::draw() const {
    if (vertex_array)
        glBindVertexArray(vertex_array->get());
    glBindBuffer(GL_ARRAY_BUFFER, corners.get());
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

std::string FullScreenPass::get_version_line(GlProfile profile) {
    return profile == GlProfile::CORE ? "#version 330 core\n" : "#version 120\n";
}

std::string FullScreenPass::get_vertex_text(GlProfile profile) {
    const bool core = profile == GlProfile::CORE;
    return get_version_line(profile) +
           (core ? "in vec2 corner;\nout vec2 place;\n" : "attribute vec2 corner;\nvarying vec2 place;\n") +
           "void main() {\n"
           "    place = 0.5 * corner + 0.5;\n"
           "    gl_Position = vec4(corner, 0.0, 1.0);\n"
           "}\n";
}

} // namespace gl
