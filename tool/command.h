#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tool/exit_code.h"
#include "tool/options.h"
#include "tool/tool_session.h"

namespace tool {

class Console;

/// One command of the program: its constructor declares its options, `run` does the work after they were
/// parsed.
class Command {
public:
    virtual ~Command() = default;

    /// Throws diagnostics::Failure. Returns EXIT_CODE_FAILED after a failure that it reported itself, such as
    /// one frame of a sequence.
    virtual ExitCode run(Console& console) = 0;

    /// True when the parsed command line names this command.
    bool is_wanted() const { return options.is_wanted(); }
    std::string get_name() const { return options.get_name(); }

    /// Inserts what the user may leave out into `arguments`, which start with the name of this command.
    /// Throws UsageError for an unknown or missing subcommand.
    virtual void complete_arguments(std::vector<std::string>& /*arguments*/) const {}

protected:
    /// `examples` are lines of the help text, each indented by two spaces.
    Command(Options& program, const char* name, const char* description, const std::string& examples)
        : options(program.add_command(name, description, "\nExamples:\n" + examples)) {}

    /// Adds --json.
    void add_json_option() { options.add_flag("--json", as_json, "print JSON"); }

    Options options;
    bool as_json = false;
};

/// A command that opens a session: of the built-in config, unless its options name another.
class SessionCommand : public Command {
protected:
    template <class... Texts>
    explicit SessionCommand(Options& program, const Texts&... texts) : Command(program, texts...) {
        session_options.builtin_only = true;
    }

    /// Adds --config, --context, --prefs, --no-prefs and --verbose.
    void add_session_options();
    /// Adds --prefs, --no-prefs and --verbose: for commands that only read preferences.
    void add_preference_reading_options();
    /// Adds --prefs and --verbose: for commands that change preferences.
    void add_preference_options();
    /// Adds --config and --context.
    void add_config_option();

    SessionChoice session_options;
};

using MakeCommand = std::unique_ptr<Command> (*)(Options& program);

template <class Made>
std::unique_ptr<Command> make_command(Options& program) {
    return std::make_unique<Made>(program);
}

// The commands.
extern const MakeCommand make_list_command, make_convert_command, make_explain_command, make_bake_command,
    make_shader_command, make_check_command, make_view_command, make_cdl_command, make_formats_command,
    make_space_command, make_prefs_command, make_legacy_command, make_doctor_command;
// The subcommands of "colorio cdl", "colorio formats", "colorio space" and "colorio prefs".
extern const MakeCommand make_cdl_list_command, make_cdl_show_command, make_cdl_write_command,
    make_cdl_add_command, make_cdl_remove_command;
extern const MakeCommand make_formats_list_command, make_formats_set_command, make_formats_add_command,
    make_formats_remove_command, make_formats_check_command;
extern const MakeCommand make_space_list_command, make_space_add_command, make_space_remove_command;
extern const MakeCommand make_prefs_path_command, make_prefs_show_command, make_prefs_set_command;

} // namespace tool
