#include "tool/settings/remove_command.h"

#include <fmt/format.h>

#include "tool/console.h"

namespace tool {

RemoveCommand::RemoveCommand(CLI::App& program, const Words& words)
    : Command(program, "remove", words.description, words.examples) {
    options->add_option(words.argument, name, words.argument_description)->required();
    add_preference_options(*options, session_options);
    session_options.builtin_only = true;
}

ExitCode RemoveCommand::run(Console& console) {
    ColorSession session(session_options, console, PreferenceUse::CHANGE);
    remove(name);
    session.save_preferences();
    console.print(fmt::format("{} is removed", name));
    add_notes(session, console);
    return EXIT_CODE_DONE;
}

void RemoveCommand::add_notes(ColorSession&, Console&) {}

} // namespace tool
