#pragma once

#include "tool/command.h"

namespace tool {

// The subcommands of "colorio cdl".
std::unique_ptr<Command> make_cdl_list_command(Options& program);
std::unique_ptr<Command> make_cdl_show_command(Options& program);
std::unique_ptr<Command> make_cdl_write_command(Options& program);
std::unique_ptr<Command> make_cdl_add_command(Options& program);
std::unique_ptr<Command> make_cdl_remove_command(Options& program);

} // namespace tool
