#pragma once

#include "tool/command.h"

namespace tool {

// The subcommands of "colorio prefs".
std::unique_ptr<Command> make_prefs_path_command(Options& program);
std::unique_ptr<Command> make_prefs_set_command(Options& program);
std::unique_ptr<Command> make_prefs_show_command(Options& program);

} // namespace tool
