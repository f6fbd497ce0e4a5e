#include "gl/gl_program.h"

#include <cstdio>
#include <sstream>
#include <utility>

#include "diagnostics/failure.h"

namespace gl {

namespace {

using GetInteger = void (*)(GLuint, GLenum, GLint*);
using GetLog = void (*)(GLuint, GLsizei, GLsizei*, GLchar*);

std::string get_log(GLuint object, GetInteger get_integer, GetLog get_text) {
    GLint length = 0;
    get_integer(object, GL_INFO_LOG_LENGTH, &length);
    std::string log(static_cast<size_t>(length > 0 ? length : 1), '\0');
    GLsizei written = 0;
    get_text(object, static_cast<GLsizei>(log.size()), &written, log.data());
    log.resize(static_cast<size_t>(written));
    return log;
}

/// The line of the text that the driver's first message is about, as " (line 12: `...`)"; empty if it names
/// none. Messages begin with the numbers of string and line: "0:12(5)", "0(12)" or "ERROR: 0:12".
std::string quote_line(const std::string& log, const std::string& text) {
    unsigned int number = 0;
    if (std::sscanf(log.c_str(), "%*u:%9u", &number) != 1 &&
        std::sscanf(log.c_str(), "%*u(%9u", &number) != 1 &&
        std::sscanf(log.c_str(), "%*[A-Z]: %*u:%9u", &number) != 1)
        return "";
    std::istringstream lines(text);
    std::string line;
    for (unsigned int i = 0; i < number; ++i)
        if (!std::getline(lines, line))
            return "";
    return " (line " + std::to_string(number) + ": `" + diagnostics::flatten(line) + "`)";
}

[[noreturn]] void fail(const std::string& what, const std::string& log, const std::string& text) {
    diagnostics::fail(diagnostics::Code::SHADER_INVALID,
                      what + ": " + diagnostics::flatten(log) + quote_line(log, text));
}

/// A compiled shader until the program is linked.
class Shader {
public:
    Shader(GLenum kind, const std::string& text) : name(glCreateShader(kind)) {
        const char* source = text.c_str();
        glShaderSource(name, 1, &source, nullptr);
        glCompileShader(name);
        GLint compiled = GL_FALSE;
        glGetShaderiv(name, GL_COMPILE_STATUS, &compiled);
        if (compiled)
            return;
        const std::string log = get_log(name, glGetShaderiv, glGetShaderInfoLog);
        glDeleteShader(name);
        fail("the shader does not compile", log, text);
    }
    ~Shader() { glDeleteShader(name); }
    Shader(const Shader&) = delete;
    Shader& operator=(const Shader&) = delete;

    const GLuint name;
};

} // namespace

GlProgram::GlProgram(const std::string& vertex_text, const std::string& fragment_text) {
    const Shader vertex(GL_VERTEX_SHADER, vertex_text);
    const Shader fragment(GL_FRAGMENT_SHADER, fragment_text);
    name = glCreateProgram();
    glAttachShader(name, vertex.name);
    glAttachShader(name, fragment.name);
    glBindAttribLocation(name, 0, "corner");
    glLinkProgram(name);
    GLint linked = GL_FALSE;
    glGetProgramiv(name, GL_LINK_STATUS, &linked);
    if (linked)
        return;
    const std::string log = get_log(name, glGetProgramiv, glGetProgramInfoLog);
    glDeleteProgram(name);
    fail("the shader does not link", log, fragment_text);
}

GlProgram::~GlProgram() {
    glDeleteProgram(name);
}

GlProgram::GlProgram(GlProgram&& other) noexcept : name(std::exchange(other.name, 0)) {}

GlProgram& GlProgram::operator=(GlProgram&& other) noexcept {
    std::swap(name, other.name);
    return *this;
}

void GlProgram::use() const {
    glUseProgram(name);
}

GLint GlProgram::get_uniform(const char* uniform) const {
    return glGetUniformLocation(name, uniform);
}

} // namespace gl
