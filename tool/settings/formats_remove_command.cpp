#include <string>

#include <fmt/format.h>

#include "colorio/color_io_auto_detection.h"
#include "tool/color_session.h"
#include "tool/console.h"
#include "tool/settings/format_associations.h"
#include "tool/settings/formats_change.h"
#include "tool/settings/formats_command.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio formats remove Camera)";

class FormatsRemoveCommand : public Command {
public:
    explicit FormatsRemoveCommand(CLI::App& program)
        : Command(program, "remove", "Remove a format that was added", EXAMPLES) {
        options->add_option("category", category, "Format to remove")->required();
        add_preference_options(*options, session_options);
        session_options.builtin_only = true;
    }

    ExitCode run(Console& console) override {
        ColorSession session(session_options, console, PreferenceUse::CHANGE);
        const unsigned int row = find_category(category);
        if (is_builtin_category(category))
            throw CommandError(
                fmt::format("'{}' is built in and would come back at the next start; change it "
                            "with 'colorio formats set'",
                            category));
        ColorIOAutoDetection::get_instance()->remove_file_format(row);
        session.save_preferences();
        console.print(fmt::format("{} is removed", category));
        note_mapping_file(session, console);
        return EXIT_CODE_DONE;
    }

private:
    SessionOptions session_options;
    std::string category;
};

} // namespace

std::unique_ptr<Command> make_formats_remove_command(CLI::App& program) {
    return std::make_unique<FormatsRemoveCommand>(program);
}

} // namespace tool
