#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tool/exit_code.h"
#include "tool/options.h"

namespace tool {

class Console;
struct SessionChoice;

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
    Command(Options& program, const char* name, const char* description, const char* examples);

    Options options;
};

// The commands.
std::unique_ptr<Command> make_list_command(Options& program);
std::unique_ptr<Command> make_convert_command(Options& program);
std::unique_ptr<Command> make_explain_command(Options& program);
std::unique_ptr<Command> make_bake_command(Options& program);
std::unique_ptr<Command> make_shader_command(Options& program);
std::unique_ptr<Command> make_check_command(Options& program);
std::unique_ptr<Command> make_view_command(Options& program);
std::unique_ptr<Command> make_cdl_command(Options& program);
std::unique_ptr<Command> make_space_command(Options& program);
std::unique_ptr<Command> make_formats_command(Options& program);
std::unique_ptr<Command> make_prefs_command(Options& program);
std::unique_ptr<Command> make_legacy_command(Options& program);

// The subcommands of "colorio cdl", "colorio formats", "colorio space" and "colorio prefs".
std::unique_ptr<Command> make_cdl_list_command(Options& program);
std::unique_ptr<Command> make_cdl_show_command(Options& program);
std::unique_ptr<Command> make_cdl_write_command(Options& program);
std::unique_ptr<Command> make_cdl_add_command(Options& program);
std::unique_ptr<Command> make_cdl_remove_command(Options& program);
std::unique_ptr<Command> make_formats_list_command(Options& program);
std::unique_ptr<Command> make_formats_set_command(Options& program);
std::unique_ptr<Command> make_formats_add_command(Options& program);
std::unique_ptr<Command> make_formats_remove_command(Options& program);
std::unique_ptr<Command> make_formats_check_command(Options& program);
std::unique_ptr<Command> make_space_list_command(Options& program);
std::unique_ptr<Command> make_space_add_command(Options& program);
std::unique_ptr<Command> make_space_remove_command(Options& program);
std::unique_ptr<Command> make_prefs_path_command(Options& program);
std::unique_ptr<Command> make_prefs_show_command(Options& program);
std::unique_ptr<Command> make_prefs_set_command(Options& program);

/// Adds --config, --context, --prefs, --no-prefs and --verbose.
void add_session_options(Options& options, SessionChoice& session);
/// Adds --prefs, --no-prefs and --verbose: for commands that only read preferences.
void add_preference_reading_options(Options& options, SessionChoice& session);
/// Adds --prefs and --verbose: for commands that change preferences.
void add_preference_options(Options& options, SessionChoice& session);
/// Adds --config and --context.
void add_config_option(Options& options, SessionChoice& session);

} // namespace tool
