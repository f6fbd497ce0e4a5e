#pragma once

#include <istream>
#include <string>
#include <vector>

namespace tool {

class Console;
class Viewer;
enum class Layout;

/// What a viewer is told to do, line by line: a command and its argument. Empty lines and those that begin
/// with '#' are passed over.
class Script {
public:
    /// Throws UsageError with the place when a line holds no command. Messages speak of `name`.
    Script(std::istream& text, const std::string& name);

    /// Runs every line, drawing a frame after each. True when the last line run was "quit", which ends the
    /// script. Throws CommandError with the place.
    bool run(Viewer& viewer, Console& console) const;

    /// One line per command, for the help text.
    static std::string get_help();

private:
    struct Line {
        std::string place; ///< "tour.txt:3"
        std::size_t command;
        std::string argument;
    };
    std::vector<Line> lines;
};

/// Number of a command's argument. Throws CommandError when the text is none.
double parse_number(const std::string& text);

/// "single", "wipe", "two" or "difference". Throws CommandError for other words.
Layout parse_layout(const std::string& word);

} // namespace tool
