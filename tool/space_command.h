#pragma once

#include "tool/command.h"

namespace tool {

// The subcommands of "colorio space".
std::unique_ptr<Command> make_space_list_command(Options& program);
std::unique_ptr<Command> make_space_add_command(Options& program);
std::unique_ptr<Command> make_space_remove_command(Options& program);

} // namespace tool
