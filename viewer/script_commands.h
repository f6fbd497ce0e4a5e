#pragma once

#include <functional>
#include <string>
#include <vector>

#include "viewer/script_help.h"

namespace viewer {

class Viewer;

/// Takes a line of output.
using ScriptPrint = std::function<void(const std::string& line)>;

/// A command of viewer scripts.
struct ScriptCommand : ScriptText {
    /// Throws diagnostics::Failure. Null: ends the script.
    void (*run)(Viewer& viewer, const ScriptPrint& print, const std::string& argument);
};

/// Every command, in the order of the help text.
const std::vector<ScriptCommand>& get_script_commands();

} // namespace viewer
