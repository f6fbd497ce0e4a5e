#pragma once

#include "conformance/check.h"

namespace conformance {

/// How a check ended.
struct Outcome {
    std::vector<std::string> findings; ///< Empty when the contract holds.
    std::string obstacle;              ///< Why the check cannot run; empty when it ran.
};

/// Every check, in the order in which they run.
Checks list_all_checks();

/// Runs a check in a separate process, so that a crash or an endless loop is a finding of that check only.
Outcome run_apart(const Check& check);

/// Runs a check in this process, for a debugger.
Outcome run_here(const Check& check);

} // namespace conformance
