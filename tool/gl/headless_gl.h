#pragma once

#include <stdexcept>
#include <string>

namespace tool {

/// There is no OpenGL here, or it refuses; the text says why.
class GlError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Which OpenGL a shader needs.
enum class GlProfile {
    LEGACY, ///< Compatibility profile, GLSL 1.20.
    CORE    ///< Core profile 3.3, GLSL 3.30.
};

/// An OpenGL context without window or display server, current in the thread that made it: on the graphics
/// card where EGL finds one, else on Mesa's software driver.
class HeadlessGl {
public:
    /// Throws GlError.
    explicit HeadlessGl(GlProfile profile);
    ~HeadlessGl();
    HeadlessGl(const HeadlessGl&) = delete;
    HeadlessGl& operator=(const HeadlessGl&) = delete;

    GlProfile get_profile() const { return profile; }
    /// What the driver calls itself.
    std::string get_renderer() const;

private:
    void open_display();
    void create_context();
    void close();

    const GlProfile profile;
    void* display = nullptr;
    void* context = nullptr;
};

} // namespace tool
