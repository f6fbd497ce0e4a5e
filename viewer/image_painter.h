#pragma once

#include <memory>
#include <vector>

#include "gl/full_screen_pass.h"
#include "gl/gl_object.h"
#include "viewer/camera.h"
#include "viewer/conversion_shader.h"
#include "viewer/image.h"

namespace viewer {

/// The most pixels a side that the driver of the current context shows.
int get_max_side();

/// Draws images through conversions with OpenGL's core profile. Textures and shaders are made only when the
/// image or the conversion has changed.
class ImagePainter {
public:
    /// Needs a current context, always the same.
    ImagePainter();

    using ImageHandle = std::shared_ptr<const Image>;
    using ConversionHandle = std::shared_ptr<const workflow::Conversion>;

    /// What is drawn. A null conversion shows the unconverted values.
    struct Subject {
        ImageHandle image;
        ConversionHandle conversion;
        float exposure = 0; ///< Stops.

        bool operator==(const Subject& other) const {
            return image == other.image && conversion == other.conversion && exposure == other.exposure;
        }
    };

    /// Draws into the framebuffer that is bound, `placement` counted from the corner of `viewport`, and only
    /// inside of `clip`. Throws diagnostics::Failure.
    void draw(const Subject& subject, const Viewport& viewport, const Viewport& clip,
              const Placement& placement, int framebuffer_height);

    /// A rectangle of the image converted by the GPU, RGBA floats from top to bottom. Throws
    /// diagnostics::Failure.
    std::vector<float> convert(const Subject& subject, const Viewport& rectangle);

    /// How many shaders were made, and how many images uploaded, since the start.
    unsigned int count_shaders() const { return shader_count; }
    unsigned int count_uploads() const { return upload_count; }

private:
    struct HeldTexture {
        ImageHandle image;
        gl::GlTexture texture;
    };
    struct HeldShader {
        ConversionHandle conversion;
        ConversionShader shader;
    };

    const gl::GlTexture& get_texture(const ImageHandle& image);
    const ConversionShader& get_shader(const ConversionHandle& conversion);

    gl::FullScreenPass pass;
    std::vector<HeldTexture> textures; ///< The last ones used, the latest behind.
    std::vector<HeldShader> shaders;
    unsigned int shader_count = 0;
    unsigned int upload_count = 0;
};

} // namespace viewer
