#include "tool/gl/headless_gl.h"

#include <cstdint>

#include <dlfcn.h>

#include <epoxy/egl.h>
#include <epoxy/gl.h>
#include <fmt/format.h>

namespace tool {

namespace {

constexpr int CORE_VERSION = 33;
/// The oldest with framebuffer objects and float textures.
constexpr int LEGACY_VERSION = 30;

bool can_open(const char* library) {
    void* handle = dlopen(library, RTLD_LAZY | RTLD_LOCAL);
    if (handle != nullptr)
        dlclose(handle);
    return handle != nullptr;
}

/// libepoxy ends the process when it misses one of these.
void require_libraries() {
    if (!can_open("libEGL.so.1"))
        throw GlError("there is no EGL here (on Debian: apt-get install libegl1 libgl1-mesa-dri)");
    if (!can_open("libGL.so.1") && !can_open("libOpenGL.so.0"))
        throw GlError("there is no OpenGL here (on Debian: apt-get install libgl1 libgl1-mesa-dri)");
}

std::string get_egl_error() {
    return fmt::format("EGL error 0x{:04x}", static_cast<unsigned int>(eglGetError()));
}

bool has_client_extension(const char* name) {
    return epoxy_has_egl_extension(EGL_NO_DISPLAY, name);
}

EGLDisplay get_platform_display(EGLenum platform, void* device) {
    return eglGetPlatformDisplayEXT(platform, device, nullptr);
}

EGLDisplay get_first_device_display() {
    if (!has_client_extension("EGL_EXT_platform_device") || !has_client_extension("EGL_EXT_device_enumeration"))
        return EGL_NO_DISPLAY;
    EGLDeviceEXT device = nullptr;
    EGLint count = 0;
    if (!eglQueryDevicesEXT(1, &device, &count) || count < 1)
        return EGL_NO_DISPLAY;
    return get_platform_display(EGL_PLATFORM_DEVICE_EXT, device);
}

EGLDisplay get_surfaceless_display() {
    if (!has_client_extension("EGL_MESA_platform_surfaceless"))
        return EGL_NO_DISPLAY;
    return get_platform_display(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY);
}

EGLDisplay get_default_display() {
    return eglGetDisplay(EGL_DEFAULT_DISPLAY);
}

} // namespace

HeadlessGl::HeadlessGl(GlProfile profile) : profile(profile) {
    require_libraries();
    open_display();
    try {
        create_context();
    } catch (...) {
        close();
        throw;
    }
}

HeadlessGl::~HeadlessGl() {
    close();
}

void HeadlessGl::open_display() {
    for (const auto get_display : {get_surfaceless_display, get_first_device_display, get_default_display}) {
        display = get_display();
        if (display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr))
            return;
    }
    display = nullptr;
    throw GlError(fmt::format("EGL finds no driver that draws without a window ({})", get_egl_error()));
}

void HeadlessGl::create_context() {
    if (!eglBindAPI(EGL_OPENGL_API))
        throw GlError("EGL offers no OpenGL");
    if (!epoxy_has_egl_extension(display, "EGL_KHR_surfaceless_context"))
        throw GlError("EGL cannot draw without a surface");
    const EGLint wanted[] = {EGL_SURFACE_TYPE, 0, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglChooseConfig(display, wanted, &config, 1, &count) || count < 1)
        throw GlError(fmt::format("EGL has no configuration for OpenGL ({})", get_egl_error()));

    const EGLint core[] = {EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 3,
                           EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT, EGL_NONE};
    const EGLint legacy[] = {EGL_NONE};
    context = eglCreateContext(display, config, EGL_NO_CONTEXT, profile == GlProfile::CORE ? core : legacy);
    if (context == EGL_NO_CONTEXT || !eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context))
        throw GlError(fmt::format("OpenGL does not start ({})", get_egl_error()));
    const int version = epoxy_gl_version();
    const int needed = profile == GlProfile::CORE ? CORE_VERSION : LEGACY_VERSION;
    if (version < needed)
        throw GlError(fmt::format("OpenGL {}.{} is too old; {}.{} is needed", version / 10, version % 10,
                                  needed / 10, needed % 10));
}

void HeadlessGl::close() {
    if (display == nullptr)
        return;
    eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (context != nullptr)
        eglDestroyContext(display, context);
    eglTerminate(display);
}

std::string HeadlessGl::get_renderer() const {
    const GLubyte* name = glGetString(GL_RENDERER);
    return name != nullptr ? reinterpret_cast<const char*>(name) : "unknown";
}

} // namespace tool
