#include "viewer/script.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "viewer/script_values.h"
#include "viewer/viewer.h"
#include "workflow/nearest_names.h"

namespace viewer {

namespace {

std::string trim(const std::string& text) {
    const std::size_t first = text.find_first_not_of(SCRIPT_BLANKS);
    return first == std::string::npos ? ""
                                      : text.substr(first, text.find_last_not_of(SCRIPT_BLANKS) - first + 1);
}

/// The error of a line. One about another file names the place in its message.
diagnostics::Diagnostic locate(diagnostics::Diagnostic error, const std::string& script, unsigned int line) {
    if (error.file.empty()) {
        error.file = script;
        error.line = line;
    } else {
        error.message = fmt::format("{}:{}: {}", script, line, error.message);
    }
    return error;
}

std::size_t find_command(const std::string& name) {
    const std::vector<ScriptCommand>& commands = get_script_commands();
    std::vector<std::string> names;
    for (std::size_t i = 0; i < commands.size(); ++i) {
        if (commands[i].name == name)
            return i;
        names.push_back(commands[i].name);
    }
    diagnostics::fail(diagnostics::Code::USAGE, fmt::format("no command '{}'", name),
                      workflow::did_you_mean(name, names));
}

} // namespace

Script::Script(std::istream& text, std::string script_name) : name(std::move(script_name)) {
    std::string line;
    for (unsigned int number = 1; std::getline(text, line); ++number) {
        line = trim(line);
        if (line.empty() || line.front() == '#')
            continue;
        const std::size_t gap = std::min(line.find_first_of(SCRIPT_BLANKS), line.size());
        try {
            lines.push_back({number, find_command(line.substr(0, gap)), trim(line.substr(gap))});
        } catch (const diagnostics::Failure& error) {
            throw diagnostics::Failure(locate(error.get_worst(), name, number));
        }
    }
}

bool Script::run(Viewer& viewer, const ScriptPrint& print) const {
    for (const Line& line : lines) {
        const ScriptCommand& command = get_script_commands()[line.command];
        if (!command.run)
            return true;
        try {
            command.run(viewer, print, line.argument);
            viewer.run_frame();
        } catch (const diagnostics::Failure& error) {
            throw diagnostics::Failure(locate(error.get_worst(), name, line.number));
        }
    }
    return false;
}

} // namespace viewer
