#pragma once

#include "tool/command.h"

namespace tool {

// The parts of "colorio formats".
std::unique_ptr<Command> make_formats_list_command(CLI::App& program);
std::unique_ptr<Command> make_formats_set_command(CLI::App& program);
std::unique_ptr<Command> make_formats_add_command(CLI::App& program);
std::unique_ptr<Command> make_formats_remove_command(CLI::App& program);
std::unique_ptr<Command> make_formats_check_command(CLI::App& program);

} // namespace tool
