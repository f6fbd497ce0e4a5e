#pragma once

#include "tool/command.h"

namespace tool {

// The subcommands of "colorio formats".
std::unique_ptr<Command> make_formats_list_command(Options& program);
std::unique_ptr<Command> make_formats_set_command(Options& program);
std::unique_ptr<Command> make_formats_add_command(Options& program);
std::unique_ptr<Command> make_formats_remove_command(Options& program);
std::unique_ptr<Command> make_formats_check_command(Options& program);

} // namespace tool
