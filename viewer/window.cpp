#include <algorithm>
#include <chrono>
#include <utility>

#include <epoxy/gl.h>

#include <imgui.h>
#include <imgui_impl_glfw.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

#include "diagnostics/failure.h"
#include "viewer/screen.h"

namespace viewer {

namespace {

/// Longest wait before files are checked.
constexpr double SLEEP_SECONDS = 0.1;
/// Frames drawn after the last event: what it opens is laid out in the first and shown in the next.
constexpr int FRAMES_TO_SETTLE = 3;
/// Before these, newer releases of the panels' library take an event a frame where several came together: a
/// key, its letter, its release. So many events of one moment are waited for.
constexpr int MOST_FRAMES = 32;

std::string get_glfw_error() {
    const char* description = nullptr;
    glfwGetError(&description);
    return description ? description : "unknown reason";
}

class Library {
public:
    Library() {
        if (!glfwInit())
            diagnostics::fail(diagnostics::Code::DISPLAY_MISSING,
                              "no display to open a window on (" + get_glfw_error() + ")");
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
            diagnostics::fail(diagnostics::Code::GPU_UNAVAILABLE,
                              "cannot open a window (" + get_glfw_error() + ")");
        glfwMakeContextCurrent(window);
        glfwSwapInterval(1);
        glfwSetWindowUserPointer(window, this);
        glfwSetDropCallback(window, [](GLFWwindow* receiver, int count, const char* paths[]) {
            Window& self = wake(receiver);
            self.drops.insert(self.drops.end(), paths, paths + count);
        });
        // The panels' library takes its own events first and passes them on to these.
        glfwSetKeyCallback(window, [](GLFWwindow* receiver, int, int, int, int) { wake(receiver); });
        glfwSetCharCallback(window, [](GLFWwindow* receiver, unsigned int) { wake(receiver); });
        glfwSetMouseButtonCallback(window, [](GLFWwindow* receiver, int, int, int) { wake(receiver); });
        glfwSetScrollCallback(window, [](GLFWwindow* receiver, double, double) { wake(receiver); });
        glfwSetCursorPosCallback(window, [](GLFWwindow* receiver, double, double) { wake(receiver); });
        glfwSetWindowFocusCallback(window, [](GLFWwindow* receiver, int) { wake(receiver); });
        glfwSetWindowRefreshCallback(window, [](GLFWwindow* receiver) { wake(receiver); });
        glfwSetFramebufferSizeCallback(window, [](GLFWwindow* receiver, int, int) { wake(receiver); });
    }

    ~Window() override { glfwDestroyWindow(window); }

    Size get_size() const override {
        Size size{};
        glfwGetFramebufferSize(window, &size.width, &size.height);
        return size;
    }

    bool begin_frame() override {
        if (frames_to_draw > 0)
            glfwPollEvents();
        else
            glfwWaitEventsTimeout(SLEEP_SECONDS);
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        if (frames_to_draw == 0)
            return false;
        --frames_to_draw;
        return true;
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
    /// Something happened that may be seen.
    static Window& wake(GLFWwindow* receiver) {
        Window& self = *static_cast<Window*>(glfwGetWindowUserPointer(receiver));
        self.frames_to_draw = std::min(std::max(self.frames_to_draw, FRAMES_TO_SETTLE) + 1, MOST_FRAMES);
        return self;
    }

    Library library;
    GLFWwindow* window = nullptr;
    bool has_panels = false;
    int frames_to_draw = FRAMES_TO_SETTLE;
    std::vector<std::string> drops;
};

} // namespace

std::unique_ptr<Screen> make_window(Screen::Size size, const std::string& title) {
    return std::make_unique<Window>(size, title);
}

} // namespace viewer
