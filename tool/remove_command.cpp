#include "tool/remove_command.h"

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/option_hints.h"

namespace tool {

RemoveCommand::RemoveCommand(Options& program, const Entry& entry)
    : Command(program, "remove", entry.description, entry.examples), entry(entry) {
    options.add(entry.argument, name, entry.argument_description).required();
    add_preference_options(options, session_options);
    session_options.builtin_only = true;
}

ExitCode RemoveCommand::run(Console& console) {
    ToolSession session(session_options, console, workflow::PreferenceUse::CHANGE);
    hint_at(diagnostics::Code::USAGE_REFUSED, entry.hint_for_refusal, [&] { entry.remove(session, name); });
    console.report(session.save_preferences());
    console.print(fmt::format("{}: removed", name));
    if (entry.find_warning)
        if (const auto warning = entry.find_warning(session))
            console.report(*warning);
    return EXIT_CODE_DONE;
}

} // namespace tool
