#include "gl/egl_context.h"

#include <dlfcn.h>

#include <string>

#include <epoxy/egl.h>
#include <epoxy/gl.h>

#include "diagnostics/failure.h"

namespace gl {

namespace {

[[noreturn]] void fail(const std::string& message, const std::string& hint = {}) {
    diagnostics::fail(diagnostics::Code::GPU_UNAVAILABLE, message, hint);
}

[[noreturn]] void fail_without_egl() {
    fail("EGL is not available",
         "install libegl1 and libgl1-mesa-dri (Mesa's software driver works without a GPU)");
}

/// libepoxy ends the process without EGL, so its presence is checked first.
bool is_egl_installed() {
    void* library = dlopen("libEGL.so.1", RTLD_LAZY | RTLD_LOCAL);
    if (library)
        dlclose(library);
    return library != nullptr;
}

/// The display of all contexts. It stays open until the process ends: closing it would unload the driver,
/// which is slow to load and loses track of what it allocated.
class Display {
public:
    static EGLDisplay get() {
        static const EGLDisplay display = open();
        return display;
    }

private:
    static EGLDisplay open() {
        if (!is_egl_installed())
            fail_without_egl();
        EGLDisplay display = open_surfaceless();
        if (display == EGL_NO_DISPLAY)
            display = open_device();
        if (display == EGL_NO_DISPLAY)
            fail_without_egl();
        return display;
    }

    static EGLDisplay initialized(EGLenum platform, void* native) {
        const EGLDisplay display = eglGetPlatformDisplayEXT(platform, native, nullptr);
        if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr))
            return EGL_NO_DISPLAY;
        if (epoxy_has_egl_extension(display, "EGL_KHR_surfaceless_context") &&
            epoxy_has_egl_extension(display, "EGL_KHR_create_context"))
            return display;
        eglTerminate(display);
        return EGL_NO_DISPLAY;
    }

    static bool has_client_extension(const char* name) {
        return epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_EXT_platform_base") &&
               epoxy_has_egl_extension(EGL_NO_DISPLAY, name);
    }

    static EGLDisplay open_surfaceless() {
        if (!has_client_extension("EGL_MESA_platform_surfaceless"))
            return EGL_NO_DISPLAY;
        return initialized(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY);
    }

    static EGLDisplay open_device() {
        constexpr EGLint MAX_DEVICES = 16;
        EGLDeviceEXT devices[MAX_DEVICES];
        EGLint count = 0;
        if (!has_client_extension("EGL_EXT_platform_device") ||
            !epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_EXT_device_enumeration") ||
            !eglQueryDevicesEXT(MAX_DEVICES, devices, &count))
            return EGL_NO_DISPLAY;
        for (EGLint i = 0; i < count; ++i) {
            const EGLDisplay display = initialized(EGL_PLATFORM_DEVICE_EXT, devices[i]);
            if (display != EGL_NO_DISPLAY)
                return display;
        }
        return EGL_NO_DISPLAY;
    }
};

/// A configuration for no surface at all.
EGLConfig choose_config(EGLDisplay display) {
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE, EGL_DONT_CARE, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglChooseConfig(display, wanted, &config, 1, &count) || count == 0)
        fail("EGL does not support OpenGL on this system");
    return config;
}

EGLContext create_context(EGLDisplay display, GlProfile profile) {
    const EGLint core[] = {EGL_CONTEXT_MAJOR_VERSION_KHR,
                           3,
                           EGL_CONTEXT_MINOR_VERSION_KHR,
                           3,
                           EGL_CONTEXT_OPENGL_PROFILE_MASK_KHR,
                           EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT_KHR,
                           EGL_NONE};
    const EGLint legacy[] = {EGL_CONTEXT_MAJOR_VERSION_KHR, 2, EGL_CONTEXT_MINOR_VERSION_KHR, 1, EGL_NONE};
    if (!eglBindAPI(EGL_OPENGL_API))
        fail("EGL does not support OpenGL on this system");
    return eglCreateContext(display, choose_config(display), EGL_NO_CONTEXT,
                            profile == GlProfile::CORE ? core : legacy);
}

} // namespace

struct EglContext::State {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLContext context = EGL_NO_CONTEXT;
    EGLDisplay former_display = EGL_NO_DISPLAY;
    EGLContext former_context = EGL_NO_CONTEXT;
    EGLSurface former_draw = EGL_NO_SURFACE;
    EGLSurface former_read = EGL_NO_SURFACE;
};

EglContext::EglContext(GlProfile profile) : state(std::make_unique<State>()) {
    state->display = Display::get();
    state->former_display = eglGetCurrentDisplay();
    state->former_context = eglGetCurrentContext();
    state->former_draw = eglGetCurrentSurface(EGL_DRAW);
    state->former_read = eglGetCurrentSurface(EGL_READ);
    state->context = create_context(state->display, profile);
    if (state->context == EGL_NO_CONTEXT)
        fail(profile == GlProfile::CORE ? "the driver does not support the OpenGL 3.3 core profile"
                                        : "the driver does not support OpenGL 2.1");
    try {
        make_current();
    } catch (...) {
        eglDestroyContext(state->display, state->context);
        throw;
    }
}

EglContext::~EglContext() {
    if (state->former_context != EGL_NO_CONTEXT)
        eglMakeCurrent(state->former_display, state->former_draw, state->former_read, state->former_context);
    else
        eglMakeCurrent(state->display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(state->display, state->context);
}

void EglContext::make_current() {
    if (!eglMakeCurrent(state->display, EGL_NO_SURFACE, EGL_NO_SURFACE, state->context))
        fail("the driver does not support an OpenGL context without a window");
}

} // namespace gl
