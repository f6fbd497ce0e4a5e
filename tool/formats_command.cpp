#include "tool/command_group.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio formats
  colorio formats set Targa --space linear
  colorio formats add Camera --extensions dng,cr2 --space linear
  colorio formats check --config show.ocio)";

} // namespace

std::unique_ptr<Command> make_formats_command(Options& program) {
    return std::make_unique<CommandGroup>(
        program, "formats", "List and change the color spaces of image formats", EXAMPLES,
        std::vector<CommandGroup::MakeCommand>{make_formats_list_command, make_formats_set_command,
                                               make_formats_add_command, make_formats_remove_command,
                                               make_formats_check_command},
        "list");
}

} // namespace tool
