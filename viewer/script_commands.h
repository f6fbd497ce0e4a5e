#pragma once

#include <string>
#include <vector>

#include "viewer/script.h"

namespace viewer {

/// What separates words on a line of a script.
inline constexpr char SCRIPT_BLANKS[] = " \t\r";

/// A command of viewer scripts.
struct ScriptCommand {
    const char* name;
    const char* argument;    ///< Placeholder for the help text; empty without an argument.
    const char* description; ///< For the help text.
    /// Throws diagnostics::Failure or gl::GlError. Null: ends the script.
    void (*run)(Viewer& viewer, const Script::Print& print, const std::string& argument);
};

/// Every command, in the order of the help text.
const std::vector<ScriptCommand>& get_script_commands();

} // namespace viewer
