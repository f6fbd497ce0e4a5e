#include "tool/remove_command.h"
#include "workflow/custom_records.h"

namespace tool {

std::unique_ptr<Command> make_cdl_remove_command(Options& program) {
    return std::make_unique<RemoveCommand>(
        program, RemoveCommand::Entry{"Remove a CDL from the preferences", "name", "CDL to remove",
                                      "  colorio cdl remove warm", workflow::remove_custom_cdl});
}

} // namespace tool
