#include "tool/gl/gl_evaluator.h"

#include <algorithm>

#include <epoxy/gl.h>
#include <fmt/format.h>

namespace tool {

namespace {

constexpr int MAX_WIDTH = 1024;
constexpr GLuint POSITION = 0;
/// One triangle that covers the whole picture.
constexpr float TRIANGLE[] = {-1, -1, 3, -1, -1, 3};

constexpr char LEGACY_VERTEX[] = R"(#version 120
attribute vec2 position;
void main() { gl_Position = vec4(position, 0.0, 1.0); }
)";
constexpr char CORE_VERTEX[] = R"(#version 330 core
in vec2 position;
void main() { gl_Position = vec4(position, 0.0, 1.0); }
)";
constexpr char LEGACY_MAIN[] = R"(
uniform sampler2D inputs;
uniform sampler3D lut3d;
uniform vec2 size;
void main() { gl_FragColor = OCIODisplay(texture2D(inputs, gl_FragCoord.xy / size), lut3d); }
)";
constexpr char CORE_MAIN[] = R"(
uniform sampler2D inputs;
uniform sampler3D lut3d;
uniform vec2 size;
out vec4 result;
void main() { result = OCIODisplay(texture(inputs, gl_FragCoord.xy / size), lut3d); }
)";

std::string get_log(GLuint object, decltype(glGetShaderiv) get_number, decltype(glGetShaderInfoLog) get_text) {
    GLint length = 0;
    get_number(object, GL_INFO_LOG_LENGTH, &length);
    std::string log(static_cast<std::size_t>(std::max(length, 1)), '\0');
    get_text(object, length, nullptr, log.data());
    log.resize(log.find('\0') == std::string::npos ? log.size() : log.find('\0'));
    return log;
}

void check_errors(const char* step) {
    const GLenum error = glGetError();
    if (error != GL_NO_ERROR)
        throw GlError(fmt::format("OpenGL fails to {} (error 0x{:04x})", step, error));
}

void set_sampling(GLenum target, GLint filter) {
    glTexParameteri(target, GL_TEXTURE_MIN_FILTER, filter);
    glTexParameteri(target, GL_TEXTURE_MAG_FILTER, filter);
    for (const GLenum side : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T, GL_TEXTURE_WRAP_R})
        glTexParameteri(target, side, GL_CLAMP_TO_EDGE);
}

/// A texture of float pixels that lives as long as this.
class FloatTexture {
public:
    FloatTexture(int width, int height, const float* rgba) {
        glGenTextures(1, &name);
        glBindTexture(GL_TEXTURE_2D, name);
        set_sampling(GL_TEXTURE_2D, GL_NEAREST);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA32F, width, height, 0, GL_RGBA, GL_FLOAT, rgba);
    }
    ~FloatTexture() { glDeleteTextures(1, &name); }
    FloatTexture(const FloatTexture&) = delete;
    FloatTexture& operator=(const FloatTexture&) = delete;

    GLuint get_name() const { return name; }

private:
    GLuint name = 0;
};

/// Has drawing go into a texture as long as this lives.
class Framebuffer {
public:
    explicit Framebuffer(const FloatTexture& texture) {
        glGenFramebuffers(1, &name);
        glBindFramebuffer(GL_FRAMEBUFFER, name);
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture.get_name(), 0);
        if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
            release();
            throw GlError("OpenGL cannot draw float pixels");
        }
    }
    ~Framebuffer() { release(); }
    Framebuffer(const Framebuffer&) = delete;
    Framebuffer& operator=(const Framebuffer&) = delete;

private:
    void release() {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        glDeleteFramebuffers(1, &name);
    }

    GLuint name = 0;
};

} // namespace

GlEvaluator::GlEvaluator(GlProfile profile, const GpuConversion& conversion) {
    build_program(profile, conversion.text);
    upload_table(conversion);
    glGenVertexArrays(1, &triangle_layout);
    glBindVertexArray(triangle_layout);
    glGenBuffers(1, &triangle);
    glBindBuffer(GL_ARRAY_BUFFER, triangle);
    glBufferData(GL_ARRAY_BUFFER, sizeof(TRIANGLE), TRIANGLE, GL_STATIC_DRAW);
    glEnableVertexAttribArray(POSITION);
    glVertexAttribPointer(POSITION, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
    check_errors("prepare the shader");
}

GlEvaluator::~GlEvaluator() {
    glDeleteBuffers(1, &triangle);
    glDeleteVertexArrays(1, &triangle_layout);
    glDeleteTextures(1, &table);
    glDeleteProgram(program);
}

unsigned int GlEvaluator::compile(unsigned int kind, const std::string& text) const {
    const GLuint shader = glCreateShader(kind);
    const char* lines = text.c_str();
    glShaderSource(shader, 1, &lines, nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled == GL_TRUE)
        return shader;
    const std::string log = get_log(shader, glGetShaderiv, glGetShaderInfoLog);
    glDeleteShader(shader);
    throw GlError(fmt::format("the shader does not compile: {}", log));
}

void GlEvaluator::build_program(GlProfile profile, const std::string& text) {
    const bool core = profile == GlProfile::CORE;
    const std::string version = core ? "#version 330 core\n" : "#version 120\n";
    const GLuint vertex = compile(GL_VERTEX_SHADER, core ? CORE_VERTEX : LEGACY_VERTEX);
    const GLuint fragment = compile(GL_FRAGMENT_SHADER, version + text + (core ? CORE_MAIN : LEGACY_MAIN));
    program = glCreateProgram();
    for (const GLuint shader : {vertex, fragment}) {
        glAttachShader(program, shader);
        glDeleteShader(shader); // goes with the program
    }
    glBindAttribLocation(program, POSITION, "position");
    glLinkProgram(program);
    GLint linked = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked == GL_TRUE)
        return;
    const std::string log = get_log(program, glGetProgramiv, glGetProgramInfoLog);
    glDeleteProgram(program);
    throw GlError(fmt::format("the shader does not link: {}", log));
}

void GlEvaluator::upload_table(const GpuConversion& conversion) {
    const auto edge = static_cast<GLsizei>(conversion.edge);
    glGenTextures(1, &table);
    glBindTexture(GL_TEXTURE_3D, table);
    set_sampling(GL_TEXTURE_3D, GL_LINEAR);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glTexImage3D(GL_TEXTURE_3D, 0, GL_RGB32F, edge, edge, edge, 0, GL_RGB, GL_FLOAT, conversion.table.data());
}

std::vector<float> GlEvaluator::evaluate(const std::vector<float>& rgba) const {
    const auto pixels = static_cast<int>(rgba.size() / 4);
    if (pixels == 0)
        return {};
    const int width = std::min(pixels, MAX_WIDTH);
    const int height = (pixels + width - 1) / width;
    std::vector<float> values = rgba;
    values.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);

    const FloatTexture inputs(width, height, values.data());
    const FloatTexture outputs(width, height, nullptr);
    const Framebuffer framebuffer(outputs);
    draw(inputs.get_name(), width, height);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_FLOAT, values.data());
    check_errors("run the shader");
    values.resize(rgba.size());
    return values;
}

void GlEvaluator::draw(unsigned int inputs, int width, int height) const {
    glViewport(0, 0, width, height);
    glUseProgram(program);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, inputs);
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_3D, table);
    glUniform1i(glGetUniformLocation(program, "inputs"), 0);
    glUniform1i(glGetUniformLocation(program, "lut3d"), 1);
    glUniform2f(glGetUniformLocation(program, "size"), static_cast<float>(width), static_cast<float>(height));
    glBindVertexArray(triangle_layout);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glActiveTexture(GL_TEXTURE0);
}

} // namespace tool
