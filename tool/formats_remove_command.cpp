#include "tool/remove_command.h"
#include "workflow/format_associations.h"

namespace tool {

std::unique_ptr<Command> make_formats_remove_command(Options& program) {
    return std::make_unique<RemoveCommand>(
        program,
        RemoveCommand::Entry{"Remove a format that was added", "category", "format to remove",
                             "  colorio formats remove Camera", workflow::remove_format,
                             "change it with 'colorio formats set'", workflow::find_overriding_mapping});
}

} // namespace tool
