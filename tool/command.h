#pragma once

#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tool/exit_code.h"

namespace tool {

class Console;
struct SessionOptions;

/// One command of the program: its constructor declares its options, `run` does the work after they were
/// parsed.
class Command {
public:
    virtual ~Command() = default;

    /// Throws CommandError; answers EXIT_CODE_FAILED when it went on after something had failed and said so.
    virtual ExitCode run(Console& console) = 0;

    /// True when the command line names this command.
    bool is_wanted() const { return options->parsed(); }
    std::string get_name() const { return options->get_name(); }

    /// Adds what the user may leave out to `arguments`, of which this command's name is the first. Throws
    /// UsageError where that shows a mistake.
    virtual void complete_arguments(std::vector<std::string>& /*arguments*/) const {}

protected:
    /// `examples` are lines of the help text, each behind two blanks.
    Command(CLI::App& program, const char* name, const char* description, const char* examples);

    CLI::App* const options;
};

std::unique_ptr<Command> make_list_command(CLI::App& program);
std::unique_ptr<Command> make_convert_command(CLI::App& program);
std::unique_ptr<Command> make_explain_command(CLI::App& program);
std::unique_ptr<Command> make_shader_command(CLI::App& program);
std::unique_ptr<Command> make_check_command(CLI::App& program);
std::unique_ptr<Command> make_view_command(CLI::App& program);
std::unique_ptr<Command> make_cdl_command(CLI::App& program);
std::unique_ptr<Command> make_space_command(CLI::App& program);
std::unique_ptr<Command> make_formats_command(CLI::App& program);
std::unique_ptr<Command> make_prefs_command(CLI::App& program);
std::unique_ptr<Command> make_legacy_command(CLI::App& program);

/// Adds --config, --prefs, --no-prefs and --verbose.
void add_session_options(CLI::App& options, SessionOptions& session);
/// Adds what `add_preference_options` adds, and --no-prefs: for commands that change nothing.
void add_preference_reading_options(CLI::App& options, SessionOptions& session);
/// Adds what commands need that show or change preferences: --prefs and --verbose.
void add_preference_options(CLI::App& options, SessionOptions& session);
void add_config_option(CLI::App& options, SessionOptions& session);

/// A check of an option's text: empty for a finite number above 0, otherwise what is wrong with it.
std::string check_positive_number(const std::string& text);

} // namespace tool
