#include "tool/command_group.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio space add film --lut film.cube
  colorio space list
  colorio space remove film)";

} // namespace

std::unique_ptr<Command> make_space_command(Options& program) {
    return std::make_unique<CommandGroup>(
        program, "space", "List, add and remove custom color spaces, which extend the built-in config",
        EXAMPLES,
        std::vector<CommandGroup::MakeCommand>{make_space_list_command, make_space_add_command,
                                               make_space_remove_command},
        "list");
}

} // namespace tool
