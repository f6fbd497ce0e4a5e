#pragma once

#include <optional>
#include <string>

#include "gl/gl_object.h"
#include "gl/gl_profile.h"

namespace gl {

/// Draws the viewport full, by the program in use.
class FullScreenPass {
public:
    explicit FullScreenPass(GlProfile profile);

    void draw() const;

    /// First line of every shader text of that profile.
    static std::string get_version_line(GlProfile profile);
    /// Vertex shader whose output "place" runs from (0, 0) at the bottom left to (1, 1).
    static std::string get_vertex_text(GlProfile profile);

private:
    GlBuffer corners;
    std::optional<GlVertexArray> vertex_array;
};

} // namespace gl
