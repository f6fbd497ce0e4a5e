#pragma once

#include <mutex>
#include <ostream>
#include <string>
#include <string_view>

#include "diagnostics/diagnostic.h"

namespace tool {

/// Where the two output streams of the tool go.
struct ConsoleTraits {
    bool out_is_terminal = false;
    bool err_is_terminal = false;
    bool wants_color = false;
    unsigned int err_width = 0; ///< Columns of standard error; 0 to ask the terminal each time.
};

/// Asks the operating system about standard output and standard error; NO_COLOR and TERM=dumb are respected.
ConsoleTraits detect_console_traits();

/// `text`, which is UTF-8, with control characters as \x1b and so on: names from files and arguments must
/// neither control the terminal nor look like other lines.
std::string escape_controls(std::string_view text);

/// Prints everything that the user sees: results to one stream, messages and progress to the other.
/// Thread-safe.
class Console {
public:
    Console(std::ostream& out, std::ostream& err, const ConsoleTraits& traits = {});

    /// Prints a result, with control characters escaped, and a line end. Throws diagnostics::Failure when it
    /// cannot be written.
    void print(const std::string& line);
    /// Prints text of several lines unchanged: JSON, or help. Throws like `print`.
    void print_text(const std::string& text);
    /// Prints a heading, bold on a terminal. Throws like `print`.
    void print_heading(const std::string& line);
    /// Prints a note, warning or error to the stream of messages, followed by its hint.
    void report(const diagnostics::Diagnostic& diagnostic);
    void report(const diagnostics::Diagnostics& list);
    /// Reports `list` later: with `release`, or before the next result, error or status. Those with the cause
    /// of that error are left out, since it says the same.
    void hold(const diagnostics::Diagnostics& list);
    void release();
    /// Whether `report` writes JSON.
    bool writes_json_diagnostics() const { return json_diagnostics; }
    /// Prints a message of the log, which may have several lines.
    void show_log(const std::string& message);
    /// Makes `report` write JSON, one object per line, instead of text.
    void set_json_diagnostics(bool wanted) { json_diagnostics = wanted; }

    /// Makes `report` leave notes out, and shows no status.
    void set_quiet(bool wanted) { quiet = wanted; }

    /// Flushes the results. Throws diagnostics::Failure when some could not be written and `print` has not
    /// reported it yet.
    void finish();

    /// Keeps a text on the last line of the terminal while messages scroll above it; an empty text removes
    /// it. Does nothing unless messages go to a terminal.
    void set_status(const std::string& text);
    bool shows_status() const { return traits.err_is_terminal && !quiet; }
    /// Columns that a status can have without wrapping.
    unsigned int get_status_width() const;

private:
    void check_output();
    void write(const diagnostics::Diagnostic& diagnostic);
    void write_message(const char* color, const std::string& prefix, const std::string& message);

    std::ostream& out;
    std::ostream& err;
    ConsoleTraits traits;
    diagnostics::Diagnostics held;
    std::string status;
    bool output_failed = false; ///< A failed write was reported.
    bool json_diagnostics = false;
    bool quiet = false;
    std::mutex mutex;
};

} // namespace tool
