#include "tool/command_group.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio prefs path
  colorio prefs show --json
  colorio prefs set color_space_file_path show.ocio)";

} // namespace

std::unique_ptr<Command> make_prefs_command(Options& program) {
    return std::make_unique<CommandGroup>(program, "prefs", "Show and change the preferences file", EXAMPLES,
                                          std::vector<CommandGroup::MakeCommand>{make_prefs_path_command,
                                                                                 make_prefs_set_command,
                                                                                 make_prefs_show_command});
}

} // namespace tool
