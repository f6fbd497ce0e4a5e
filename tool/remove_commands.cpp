#include <string>

#include <fmt/format.h>

#include "tool/command.h"
#include "tool/console.h"
#include "tool/option_hints.h"
#include "workflow/custom_records.h"
#include "workflow/format_associations.h"

namespace tool {

namespace {

/// What is removed, and the texts of the help.
struct Entry {
    const char* description;
    const char* argument;
    const char* argument_description;
    const char* examples;
    /// Removes the entry from the session. Throws diagnostics::Failure.
    void (*remove)(workflow::Session& session, const std::string& name);
    /// Hint for an entry that cannot be removed; may be empty.
    const char* hint_for_refusal = "";
    /// A warning to report after the removal; may be null.
    std::optional<diagnostics::Diagnostic> (*find_warning)(const workflow::Session& session) = nullptr;
};

constexpr Entry CDL = {"Remove a CDL from the preferences", "name", "CDL to remove",
                       "  colorio cdl remove warm", workflow::remove_custom_cdl};
constexpr Entry SPACE = {"Remove a custom color space", "name", "color space to remove",
                         "  colorio space remove film", workflow::remove_custom_space};
constexpr Entry FORMAT = {"Remove a format that was added",
                          "category",
                          "format to remove",
                          "  colorio formats remove Camera",
                          workflow::remove_format,
                          "change it with 'colorio formats set'",
                          workflow::find_overriding_mapping};

/// "remove NAME": removes an entry from the preferences.
class RemoveCommand : public SessionCommand {
public:
    RemoveCommand(Options& program, const Entry& entry)
        : SessionCommand(program, "remove", entry.description, entry.examples), entry(entry) {
        options.add(entry.argument, name, entry.argument_description).required();
        add_preference_options();
    }

    ExitCode run(Console& console) override {
        ToolSession session(session_options, console, workflow::PreferenceUse::CHANGE);
        hint_at(diagnostics::Code::USAGE_REFUSED, entry.hint_for_refusal,
                [&] { entry.remove(session, name); });
        console.report(session.save_preferences());
        console.print(fmt::format("{}: removed", name));
        if (entry.find_warning)
            if (const auto warning = entry.find_warning(session))
                console.report(*warning);
        return EXIT_CODE_DONE;
    }

private:
    const Entry& entry;
    std::string name;
};

template <const Entry& ENTRY>
std::unique_ptr<Command> make_remove_command(Options& program) {
    return std::make_unique<RemoveCommand>(program, ENTRY);
}

} // namespace

const MakeCommand make_cdl_remove_command = make_remove_command<CDL>;
const MakeCommand make_formats_remove_command = make_remove_command<FORMAT>;
const MakeCommand make_space_remove_command = make_remove_command<SPACE>;

} // namespace tool
