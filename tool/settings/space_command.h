#pragma once

#include "tool/command.h"

namespace tool {

// The parts of "colorio space".
std::unique_ptr<Command> make_space_list_command(CLI::App& program);
std::unique_ptr<Command> make_space_add_command(CLI::App& program);
std::unique_ptr<Command> make_space_remove_command(CLI::App& program);

} // namespace tool
