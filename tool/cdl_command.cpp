#include "tool/command_group.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio cdl list grades.ccc
  colorio cdl write warm.cc --cdl warm=1.1,1,0.9/0,0,0/1,1,1/1
  colorio cdl add warm grades.ccc:shot_010
  colorio list cdls)";

} // namespace

std::unique_ptr<Command> make_cdl_command(Options& program) {
    return std::make_unique<CommandGroup>(
        program, "cdl", "Read and write CDL files, and manage the CDLs of the preferences", EXAMPLES,
        std::vector<CommandGroup::MakeCommand>{make_cdl_list_command, make_cdl_show_command,
                                               make_cdl_write_command, make_cdl_add_command,
                                               make_cdl_remove_command});
}

} // namespace tool
