#pragma once

#include <functional>
#include <istream>
#include <string>
#include <vector>

namespace viewer {

class Viewer;
enum class Layout;

/// Commands for a viewer, one per line with its argument. Empty lines and lines that begin with '#' are
/// ignored.
class Script {
public:
    /// Takes a line of output.
    using Print = std::function<void(const std::string& line)>;

    /// Throws diagnostics::Failure with `name`, as the file, and line number for an unknown command.
    Script(std::istream& text, std::string name);

    /// Runs every line and draws a frame after each. True when "quit" ended the script. Throws
    /// diagnostics::Failure with name and line number.
    bool run(Viewer& viewer, const Print& print) const;

    /// One line per command, for the help text.
    static std::string get_help();

private:
    struct Line {
        unsigned int number; ///< From 1.
        std::size_t command;
        std::string argument;
    };

    std::string name;
    std::vector<Line> lines;
};

/// The finite number in `text`. Throws diagnostics::Failure for anything else.
double parse_number(const std::string& text);

/// "single", "wipe", "two" or "difference". Throws diagnostics::Failure for other words.
Layout parse_layout(const std::string& word);

} // namespace viewer
