#include "tool/command.h"

#include <optional>
#include <string>

#include <fmt/format.h>

#include "tool/cdl/correction_text.h"
#include "workflow/session.h"

namespace tool {

Command::Command(CLI::App& program, const char* name, const char* description, const char* examples)
    : options(program.add_subcommand(name, description)) {
    options->footer(std::string("\nExamples:\n") + examples);
}

void add_session_options(CLI::App& options, SessionOptions& session) {
    add_config_option(options, session);
    add_preference_reading_options(options, session);
}

void add_preference_reading_options(CLI::App& options, SessionOptions& session) {
    add_preference_options(options, session);
    options.add_flag("--no-prefs", session.no_preferences, "Use no preference file")
        ->excludes(options.get_option("--prefs"));
}

void add_preference_options(CLI::App& options, SessionOptions& session) {
    options.add_option("--prefs", session.preferences_path,
                       "Preference file to use instead of your own ('colorio prefs path')");
    options.add_flag("-v,--verbose", session.verbose, "Show every message of the colour management");
}

void add_config_option(CLI::App& options, SessionOptions& session) {
    options.add_option(
        "--config", session.config_path,
        "OpenColorIO configuration file; without it the one that $OCIO names, then that of the "
        "preferences, then the built-in one");
}

std::string check_positive_number(const std::string& text) {
    const std::optional<float> value = parse_number(text);
    return value && *value > 0 ? "" : fmt::format("'{}' is not a positive number", text);
}

} // namespace tool
