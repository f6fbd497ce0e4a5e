#include <fmt/format.h>

#include "colorio/color_io_auto_detection.h"
#include "tool/settings/formats_change.h"
#include "tool/settings/formats_command.h"
#include "tool/settings/remove_command.h"
#include "workflow/format_associations.h"

namespace tool {

namespace {

class FormatsRemoveCommand : public RemoveCommand {
public:
    explicit FormatsRemoveCommand(CLI::App& program)
        : RemoveCommand(program, {"Remove a format that was added", "category", "Format to remove",
                                  "  colorio formats remove Camera"}) {}

private:
    void remove(const std::string& category) override {
        const unsigned int row = find_category(category);
        if (is_builtin_category(category))
            throw CommandError(
                fmt::format("'{}' is built in and would come back at the next start; change it "
                            "with 'colorio formats set'",
                            category));
        ColorIOAutoDetection::get_instance()->remove_file_format(row);
    }
    void add_notes(ColorSession& session, Console& console) override { note_mapping_file(session, console); }
};

} // namespace

std::unique_ptr<Command> make_formats_remove_command(CLI::App& program) {
    return std::make_unique<FormatsRemoveCommand>(program);
}

} // namespace tool
