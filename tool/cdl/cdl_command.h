#pragma once

#include "tool/command.h"

namespace tool {

// The parts of "colorio cdl".
std::unique_ptr<Command> make_cdl_list_command(CLI::App& program);
std::unique_ptr<Command> make_cdl_show_command(CLI::App& program);
std::unique_ptr<Command> make_cdl_write_command(CLI::App& program);
std::unique_ptr<Command> make_cdl_add_command(CLI::App& program);
std::unique_ptr<Command> make_cdl_remove_command(CLI::App& program);

} // namespace tool
