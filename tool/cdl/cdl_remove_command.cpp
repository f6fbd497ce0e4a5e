#include <string>

#include <fmt/format.h>

#include "colorio/color_io_manager.h"
#include "tool/cdl/cdl_command.h"
#include "tool/color_session.h"
#include "tool/console.h"
#include "tool/settings/record_list.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio cdl remove warm)";

class CdlRemoveCommand : public Command {
public:
    explicit CdlRemoveCommand(CLI::App& program)
        : Command(program, "remove", "Remove one of your own CDLs", EXAMPLES) {
        options->add_option("name", name, "CDL to remove")->required();
        add_preference_options(*options, session_options);
        session_options.builtin_only = true;
    }

    ExitCode run(Console& console) override {
        ColorSession session(session_options, console, PreferenceUse::CHANGE);
        ColorIOManager& manager = *ColorIOManager::get_instance();
        manager.set_tavelion_config(remove_record(manager.get_tavelion_color_decision_lists(), name, "CDL"));
        session.save_preferences();
        console.print(fmt::format("{} is removed", name));
        return EXIT_CODE_DONE;
    }

private:
    SessionOptions session_options;
    std::string name;
};

} // namespace

std::unique_ptr<Command> make_cdl_remove_command(CLI::App& program) {
    return std::make_unique<CdlRemoveCommand>(program);
}

} // namespace tool
