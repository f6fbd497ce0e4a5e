#pragma once

#include <istream>
#include <string>
#include <vector>

#include "viewer/script_commands.h"

namespace viewer {

class Viewer;

/// Commands for a viewer, one per line with its argument. Empty lines and lines that begin with '#' are
/// ignored.
class Script {
public:
    /// Throws diagnostics::Failure with `name`, as the file, and line number for an unknown command.
    Script(std::istream& text, std::string name);

    /// Runs every line and draws a frame after each. True when "quit" ended the script. Throws
    /// diagnostics::Failure with name and line number.
    bool run(Viewer& viewer, const ScriptPrint& print) const;

private:
    struct Line {
        unsigned int number; ///< From 1.
        std::size_t command;
        std::string argument;
    };

    std::string name;
    std::vector<Line> lines;
};

} // namespace viewer
