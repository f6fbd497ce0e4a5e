#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace workflow {

/// Runs the program at a path to its end, without input, and returns what it printed on standard output and
/// standard error. Throws diagnostics::Failure (SYSTEM_FAILURE) when it cannot be run, crashes, fails, or
/// takes longer than `patience`; it is ended then.
std::string read_program_output(const std::string& program, const std::vector<std::string>& arguments,
                                std::chrono::milliseconds patience);

} // namespace workflow
