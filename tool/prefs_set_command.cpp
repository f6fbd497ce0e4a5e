#include "tool/command.h"

#include <string>

#include <fmt/format.h>

#include "standalone/standalone_app.h"
#include "tool/console.h"
#include "workflow/preference_values.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio prefs set color_space_file_path show.ocio
  colorio prefs set cdl_library_file_path grades.ccc
  colorio prefs set use_color_space_file no

Paths are stored as absolute ones. A config and a mapping file are used from then on; an empty path ("") removes
them. 'colorio prefs show' lists all keys.)";

class PrefsSetCommand : public SessionCommand {
public:
    explicit PrefsSetCommand(Options& program)
        : SessionCommand(program, "set", "Change a preference", EXAMPLES) {
        options.add("key", key, "preference to change").required();
        options.add("value", value, "new value: yes or no, a path or a name").required().may_be_empty();
        add_preference_options();
    }

    ExitCode run(Console& console) override {
        ToolSession session(session_options, console, workflow::PreferenceUse::CHANGE);
        diagnostics::Diagnostics notes;
        StandaloneApp& app = session.edit_preferences();
        workflow::set_preference(app, key, value, notes);
        console.report(session.save_preferences());
        for (const workflow::PreferenceValue& preference : workflow::get_preference_values(app))
            if (preference.name == key)
                console.print(fmt::format("{}: {}", key, workflow::format_preference(preference)));
        console.report(notes);
        return EXIT_CODE_DONE;
    }

private:
    std::string key;
    std::string value;
};

} // namespace

const MakeCommand make_prefs_set_command = make_command<PrefsSetCommand>;

} // namespace tool
