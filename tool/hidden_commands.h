#pragma once

#include <string>
#include <vector>

namespace tool {

class Console;
class Options;

/// Runs a command that completion scripts or the build use; false if the arguments name none:
///   __complete SHELL WORD...    answers a completion script (manual/completion_answer.h)
///   __man FOLDER                writes the man pages
/// Throws diagnostics::Failure.
bool run_hidden_command(const std::vector<std::string>& arguments, const Options& options, Console& console);

} // namespace tool
