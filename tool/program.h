#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "tool/console.h"
#include "tool/exit_code.h"

namespace tool {

/// Runs the tool. `arguments` do not include the name of the program; results go to `out`, messages to `err`.
/// Returns the exit code, or EXIT_CODE_NOT_HERE; throws nothing.
int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
        const ConsoleTraits& traits = {});

} // namespace tool
