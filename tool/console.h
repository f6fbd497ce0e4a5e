#pragma once

#include <mutex>
#include <ostream>
#include <string>

#include "diagnostics/diagnostic.h"

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

    /// A result; a line end is added. Throws diagnostics::Failure when it cannot be written.
    void print(const std::string& line);
    /// A heading among the results, bold where the stream shows it.
    void print_heading(const std::string& line);
    /// A note, a warning or an error on the stream of messages, with its hint below.
    void report(const diagnostics::Diagnostic& diagnostic);
    void report(const diagnostics::Diagnostics& list);
    /// A message of the log, as it is.
    void show_log(const std::string& message);
    /// Writes reported diagnostics as JSON, one object a line, instead of text.
    void set_json_diagnostics(bool wanted) { json_diagnostics = wanted; }

    /// Sees to it that the results are where they belong. Throws diagnostics::Failure when one is not, unless
    /// `print` did.
    void finish();

    /// Text kept on the last line of the terminal while messages scroll above it; empty removes it.
    /// Nothing is written where messages do not go to a terminal.
    void set_status(const std::string& text);
    bool shows_status() const { return traits.err_is_terminal; }

private:
    void check_output();
    void write_message(const char* color, const std::string& prefix, const std::string& message);

    std::ostream& out;
    std::ostream& err;
    ConsoleTraits traits;
    std::string status;
    bool output_failed = false; ///< And that was reported.
    bool json_diagnostics = false;
    std::mutex mutex;
};

} // namespace tool
