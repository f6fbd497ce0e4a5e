#include <string>

#include <fmt/format.h>

#include "colorio/color_io_manager.h"
#include "tool/color_session.h"
#include "tool/console.h"
#include "tool/settings/record_list.h"
#include "tool/settings/space_command.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio space remove film)";

class SpaceRemoveCommand : public Command {
public:
    explicit SpaceRemoveCommand(CLI::App& program)
        : Command(program, "remove", "Remove one of your own colour spaces", EXAMPLES) {
        options->add_option("name", name, "Colour space to remove")->required();
        add_preference_options(*options, session_options);
        session_options.builtin_only = true;
    }

    ExitCode run(Console& console) override {
        ColorSession session(session_options, console, PreferenceUse::CHANGE);
        ColorIOManager& manager = *ColorIOManager::get_instance();
        manager.set_tavelion_config(remove_record(manager.get_tavelion_color_spaces(), name, "colour space"));
        session.save_preferences();
        console.print(fmt::format("{} is removed", name));
        return EXIT_CODE_DONE;
    }

private:
    SessionOptions session_options;
    std::string name;
};

} // namespace

std::unique_ptr<Command> make_space_remove_command(CLI::App& program) {
    return std::make_unique<SpaceRemoveCommand>(program);
}

} // namespace tool
