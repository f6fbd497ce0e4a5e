#pragma once

#include <optional>
#include <string>

#include "gl/gl_object.h"
#include "gl/gl_profile.h"

namespace gl {

/// Fills the viewport with the program in use. Needs a current context of its profile, always the same.
class FullScreenPass {
public:
    /// Makes the buffers in the current context.
    explicit FullScreenPass(GlProfile profile);

    /// Draws once.
    void draw() const;

    /// First line of every shader text of that profile.
    static std::string get_version_line(GlProfile profile);
    /// Vertex shader; its output "place" goes from (0, 0) at the bottom left to (1, 1).
    static std::string get_vertex_text(GlProfile profile);

private:
    GlBuffer corners;
    std::optional<GlVertexArray> vertex_array;
};

} // namespace gl
