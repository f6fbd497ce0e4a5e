#pragma once

#include <mutex>
#include <ostream>
#include <string>

namespace tool {

/// What the two streams of the program lead to.
struct ConsoleTraits {
    bool out_is_terminal = false;
    bool err_is_terminal = false;
    bool wants_color = false;
};

/// Asks the operating system about standard output and standard error; NO_COLOR and TERM=dumb are respected.
ConsoleTraits detect_console_traits();

/// The one way to the user: results go to one stream, messages and progress to the other. Thread-safe.
class Console {
public:
    Console(std::ostream& out, std::ostream& err, const ConsoleTraits& traits = {});

    /// A result; a line end is added. Throws CommandError when it cannot be written.
    void print(const std::string& line);
    /// A heading among the results, bold where the stream shows it.
    void print_heading(const std::string& line);
    /// Something the user may want to know.
    void note(const std::string& message);
    void warn(const std::string& message);
    void error(const std::string& message);

    /// Sees to it that the results are where they belong. Throws CommandError when one is not, unless `print`
    /// did.
    void finish();

    /// Text kept on the last line of the terminal while messages scroll above it; empty removes it.
    /// Nothing is written where messages do not go to a terminal.
    void set_status(const std::string& text);
    bool shows_status() const { return traits.err_is_terminal; }

private:
    void check_output();
    void write_message(const char* color, const char* prefix, const std::string& message);

    std::ostream& out;
    std::ostream& err;
    ConsoleTraits traits;
    std::string status;
    bool output_failed = false; ///< And that was said.
    std::mutex mutex;
};

} // namespace tool
