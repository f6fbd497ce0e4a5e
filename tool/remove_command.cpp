#include "tool/remove_command.h"

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/tool_session.h"

namespace tool {

RemoveCommand::RemoveCommand(Options& program, const Words& words)
    : Command(program, "remove", words.description, words.examples) {
    options.add(words.argument, name, words.argument_description).required();
    add_preference_options(options, session_options);
    session_options.builtin_only = true;
}

ExitCode RemoveCommand::run(Console& console) {
    ToolSession session(session_options, console, workflow::PreferenceUse::CHANGE);
    remove(name);
    console.report(session.save_preferences());
    console.print(fmt::format("{}: removed", name));
    add_notes(session, console);
    return EXIT_CODE_DONE;
}

void RemoveCommand::add_notes(workflow::Session&, Console&) {}

} // namespace tool
