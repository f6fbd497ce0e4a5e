#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "tool/console.h"

namespace tool {

/// Runs the program with the arguments behind its name: results to `out`, messages to `err`. Answers the exit
/// code; throws nothing.
int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
        const ConsoleTraits& traits = {});

} // namespace tool
