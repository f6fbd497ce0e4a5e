#include <chrono>
#include <utility>

#include <epoxy/gl.h>

#include <imgui.h>
#include <imgui_impl_glfw.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

#include "tool/gl/gl_error.h"
#include "tool/viewer/screen.h"

namespace tool {

namespace {

/// How long the window sleeps at most before files are looked at.
constexpr double SLEEP_SECONDS = 0.1;
/// Frames drawn after an event: what it opens is laid out in the first and shown in the next.
constexpr int FRAMES_PER_EVENT = 3;

std::string get_glfw_error() {
    const char* description = nullptr;
    glfwGetError(&description);
    return description ? description : "unknown reason";
}

class Library {
public:
    Library() {
        if (!glfwInit())
            throw GlError("there is no display to open a window on (" + get_glfw_error() +
                          "); --screenshot works without one");
    }
    ~Library() { glfwTerminate(); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
};

class Window : public Screen {
public:
    Window(Size size, const std::string& title) {
        glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
        glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 3);
        glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
        window = glfwCreateWindow(size.width, size.height, title.c_str(), nullptr, nullptr);
        if (!window)
            throw GlError("cannot open a window (" + get_glfw_error() + ")");
        glfwMakeContextCurrent(window);
        glfwSwapInterval(1);
        glfwSetWindowUserPointer(window, this);
        glfwSetDropCallback(window, [](GLFWwindow* receiver, int count, const char* paths[]) {
            auto& self = *static_cast<Window*>(glfwGetWindowUserPointer(receiver));
            self.drops.insert(self.drops.end(), paths, paths + count);
        });
    }

    ~Window() override { glfwDestroyWindow(window); }

    Size get_size() const override {
        Size size{};
        glfwGetFramebufferSize(window, &size.width, &size.height);
        return size;
    }

    bool begin_frame() override {
        const double start = glfwGetTime();
        if (frames_to_draw > 0)
            glfwPollEvents();
        else
            glfwWaitEventsTimeout(SLEEP_SECONDS);
        if (glfwGetTime() - start < SLEEP_SECONDS / 2 && frames_to_draw <= 0)
            frames_to_draw = FRAMES_PER_EVENT;
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        return frames_to_draw-- > 0;
    }

    void begin_panels() override {
        if (!has_panels)
            has_panels = ImGui_ImplGlfw_InitForOpenGL(window, true);
        ImGui_ImplGlfw_NewFrame();
    }

    void close_panels() override {
        if (has_panels)
            ImGui_ImplGlfw_Shutdown();
        has_panels = false;
    }

    void end_frame() override { glfwSwapBuffers(window); }
    bool is_closed() const override { return glfwWindowShouldClose(window); }
    std::vector<std::string> take_drops() override { return std::exchange(drops, {}); }

private:
    Library library;
    GLFWwindow* window = nullptr;
    bool has_panels = false;
    int frames_to_draw = FRAMES_PER_EVENT;
    std::vector<std::string> drops;
};

} // namespace

std::unique_ptr<Screen> make_window(Screen::Size size, const std::string& title) {
    return std::make_unique<Window>(size, title);
}

} // namespace tool
