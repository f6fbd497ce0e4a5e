#include "tool/console.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "diagnostics/failure.h"
#include "tool/json_output.h"

namespace tool {

namespace {

constexpr char BOLD[] = "\033[1m";
constexpr char BOLD_RED[] = "\033[1;31m";
constexpr char YELLOW[] = "\033[33m";
constexpr char RESET[] = "\033[0m";
constexpr char CLEAR_LINE[] = "\r\033[K";

bool is_set(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

bool is_dumb_terminal() {
    const char* term = std::getenv("TERM");
    return term == nullptr || std::string_view(term) == "dumb";
}

/// The bytes of the control character at the start of `text`; 0 for any other.
std::size_t count_control_bytes(std::string_view text) {
    const auto byte = [text](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
    };
    if (byte(0) < 0x20 || byte(0) == 0x7F)
        return 1;
    const bool is_c1 = byte(0) == 0xC2 && byte(1) >= 0x80 && byte(1) < 0xA0; // U+0080 to U+009F
    return is_c1 ? 2 : 0;
}

/// Every line escaped by itself.
std::string escape_lines(std::string_view text) {
    std::string result;
    for (std::size_t end; (end = text.find('\n')) != text.npos; text.remove_prefix(end + 1))
        result += escape_controls(text.substr(0, end)) + '\n';
    return result + escape_controls(text);
}

} // namespace

std::string escape_controls(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t controls = count_control_bytes(text);
        for (std::size_t i = 0; i < controls; ++i)
            result += fmt::format("\\x{:02x}", static_cast<unsigned char>(text[i]));
        if (controls == 0)
            result += text.front();
        text.remove_prefix(std::max<std::size_t>(controls, 1));
    }
    return result;
}

ConsoleTraits detect_console_traits() {
    ConsoleTraits traits;
    traits.out_is_terminal = isatty(STDOUT_FILENO) != 0;
    traits.err_is_terminal = isatty(STDERR_FILENO) != 0 && !is_dumb_terminal();
    traits.wants_color = !is_set("NO_COLOR") && !is_dumb_terminal();
    return traits;
}

Console::Console(std::ostream& out, std::ostream& err, const ConsoleTraits& traits)
    : out(out), err(err), traits(traits) {}

void Console::print(const std::string& line) {
    print_text(escape_controls(line));
}

void Console::print_text(const std::string& text) {
    release();
    std::lock_guard<std::mutex> lock(mutex);
    errno = 0;
    out << text << '\n';
    check_output();
}

void Console::finish() {
    release();
    std::lock_guard<std::mutex> lock(mutex);
    const bool was_whole = out.good();
    if (!was_whole)
        out.clear(); // so that the next attempt shows the reason
    errno = 0;
    out.flush();
    if (!was_whole)
        out.setstate(std::ios::badbit);
    check_output();
}

/// Throws diagnostics::Failure, once, when a write to `out` failed; takes the reason from `errno`.
void Console::check_output() {
    if (out.good() || output_failed)
        return;
    output_failed = true;
    diagnostics::fail(diagnostics::Code::FILE_UNWRITABLE,
                      fmt::format("cannot write to standard output{}{}", errno == 0 ? "" : ": ",
                                  errno == 0 ? "" : std::strerror(errno)));
}

void Console::print_heading(const std::string& line) {
    const bool bold = traits.out_is_terminal && traits.wants_color;
    const std::string text = escape_controls(line);
    print_text(bold ? BOLD + text + RESET : text);
}

void Console::hold(const diagnostics::Diagnostics& list) {
    std::lock_guard<std::mutex> lock(mutex);
    add_new(held, list);
}

void Console::release() {
    diagnostics::Diagnostics list;
    {
        std::lock_guard<std::mutex> lock(mutex);
        list.swap(held);
    }
    for (const diagnostics::Diagnostic& diagnostic : list)
        write(diagnostic);
}

void Console::report(const diagnostics::Diagnostic& diagnostic) {
    if (diagnostic.severity == diagnostics::Severity::ERROR) {
        {
            std::lock_guard<std::mutex> lock(mutex);
            held.erase(std::remove_if(held.begin(), held.end(),
                                      [&](const auto& one) { return has_same_cause(one, diagnostic); }),
                       held.end());
        }
        release();
    }
    write(diagnostic);
}

void Console::write(const diagnostics::Diagnostic& diagnostic) {
    if (quiet && diagnostic.severity == diagnostics::Severity::NOTE)
        return;
    if (json_diagnostics)
        return write_message("", "", to_json(diagnostic).format_line());
    const bool is_note = diagnostic.severity == diagnostics::Severity::NOTE;
    const bool is_error = diagnostic.severity == diagnostics::Severity::ERROR;
    const std::string prefix = is_note ? "" : fmt::format("colorio: {}:", get_name(diagnostic.severity));
    std::string text = escape_controls(format_located(diagnostic));
    if (!diagnostic.hint.empty())
        text += "\nhint: " + escape_controls(diagnostic.hint);
    write_message(is_error ? BOLD_RED : is_note ? "" : YELLOW, prefix, text);
}

void Console::report(const diagnostics::Diagnostics& list) {
    for (const diagnostics::Diagnostic& diagnostic : list)
        report(diagnostic);
}

void Console::show_log(const std::string& message) {
    write_message("", "", escape_lines(message));
}

void Console::write_message(const char* color, const std::string& prefix, const std::string& message) {
    const bool colored = traits.err_is_terminal && traits.wants_color && *color != '\0';
    std::lock_guard<std::mutex> lock(mutex);
    if (!status.empty())
        err << CLEAR_LINE;
    if (!prefix.empty())
        err << (colored ? color : "") << prefix << (colored ? RESET : "") << ' ';
    err << message << '\n' << status;
    err.flush();
}

void Console::set_status(const std::string& text) {
    if (!shows_status())
        return;
    release();
    std::lock_guard<std::mutex> lock(mutex);
    status = text;
    err << CLEAR_LINE << status;
    err.flush();
}

unsigned int Console::get_status_width() const {
    constexpr unsigned int USUAL_WIDTH = 80;
    unsigned int width = traits.err_width;
    winsize size = {};
    if (width == 0)
        width = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : USUAL_WIDTH;
    return width - 1; // some terminals wrap after the last column
}

} // namespace tool
