#include "tool/remove_command.h"
#include "workflow/custom_records.h"

namespace tool {

std::unique_ptr<Command> make_space_remove_command(Options& program) {
    return std::make_unique<RemoveCommand>(
        program, RemoveCommand::Entry{"Remove a custom color space", "name", "color space to remove",
                                      "  colorio space remove film", workflow::remove_custom_space});
}

} // namespace tool
