#include <imgui.h>

#include "diagnostics/failure.h"
#include "gl/egl_context.h"
#include "gl/gl_object.h"
#include "viewer/panel_input.h"
#include "viewer/screen.h"

namespace viewer {

namespace {

/// Time between two frames, for what the panels animate.
constexpr float FRAME_SECONDS = 1.0f / 60;

class Offscreen : public Screen {
public:
    explicit Offscreen(Size size) : size(size) {
        glBindTexture(GL_TEXTURE_2D, colors.get());
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, size.width, size.height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     nullptr);
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer.get());
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, colors.get(), 0);
        if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE)
            diagnostics::fail(diagnostics::Code::GPU_LIMIT,
                              "the driver does not support images of this size");
    }

    Size get_size() const override { return size; }

    bool begin_frame() override {
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer.get());
        return true;
    }

    void begin_panels() override {
        ImGuiIO& io = ImGui::GetIO();
        io.DisplaySize = ImVec2(static_cast<float>(size.width), static_cast<float>(size.height));
        io.DeltaTime = FRAME_SECONDS;
        panel_input::use_plain_keys();
    }

    void close_panels() override {}
    void end_frame() override {}
    bool is_closed() const override { return false; }
    std::vector<std::string> take_drops() override { return {}; }

private:
    gl::EglContext context{gl::GlProfile::CORE};
    Size size;
    gl::GlTexture colors;
    gl::GlFramebuffer framebuffer;
};

} // namespace

std::unique_ptr<Screen> make_offscreen(Screen::Size size) {
    return std::make_unique<Offscreen>(size);
}

} // namespace viewer
