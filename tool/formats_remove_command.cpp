#include <fmt/format.h>

#include "colorio/color_io_auto_detection.h"
#include "tool/formats_change.h"
#include "tool/formats_command.h"
#include "tool/remove_command.h"
#include "workflow/format_associations.h"

namespace tool {

namespace {

class FormatsRemoveCommand : public RemoveCommand {
public:
    explicit FormatsRemoveCommand(Options& program)
        : RemoveCommand(program, {"Remove a format that was added", "category", "format to remove",
                                  "  colorio formats remove Camera"}) {}

private:
    void remove(const std::string& category) override {
        const unsigned int row = workflow::find_category(category);
        if (workflow::is_builtin_category(category))
            diagnostics::fail(diagnostics::Code::USAGE_REFUSED,
                              fmt::format("cannot remove '{}': it is a built-in format", category),
                              "change it with 'colorio formats set'");
        ColorIOAutoDetection::get_instance()->remove_file_format(row);
    }
    void add_notes(workflow::Session& session, Console& console) override {
        note_mapping_file(session, console);
    }
};

} // namespace

std::unique_ptr<Command> make_formats_remove_command(Options& program) {
    return std::make_unique<FormatsRemoveCommand>(program);
}

} // namespace tool
