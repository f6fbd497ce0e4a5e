#pragma once

#include <string>
#include <vector>

namespace viewer {

/// What the help says of a command of viewer scripts. Programs that show no images know these texts, too.
struct ScriptText {
    const char* name;
    const char* argument; ///< Placeholder; empty without an argument.
    const char* description;
};

/// Every command, in the order of the help text.
const std::vector<ScriptText>& get_script_texts();

/// One line per command, for the help text.
std::string get_script_help();

} // namespace viewer
