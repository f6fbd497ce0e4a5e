#include "tool/command.h"

#include "tool/tool_session.h"

#include <string>

namespace tool {

Command::Command(Options& program, const char* name, const char* description, const char* examples)
    : options(program.add_command(name, description, std::string("\nExamples:\n") + examples)) {}

void add_session_options(Options& options, SessionChoice& session) {
    add_config_option(options, session);
    add_preference_reading_options(options, session);
}

void add_preference_reading_options(Options& options, SessionChoice& session) {
    add_preference_options(options, session);
    options.add_flag("--no-prefs", session.no_preferences, "ignore the preferences file")
        .excludes(options.get("--prefs"));
}

void add_preference_options(Options& options, SessionChoice& session) {
    options
        .add("--prefs", session.preferences_path,
             "preferences file to use (default: see 'colorio prefs path')")
        .value("FILE");
    options.add_flag("-v,--verbose", session.verbose, "show every message of the log");
}

void add_config_option(Options& options, SessionChoice& session) {
    options
        .add("--config", session.config_path,
             "OCIO config: a file, an .ocioz archive or ocio://NAME (default: $OCIO, then the config of the "
             "preferences, then the built-in config)")
        .value("CONFIG");
    options
        .add("--context", session.context,
             "value of a context variable; overrides the environment; can be repeated")
        .value("KEY=VALUE")
        .one_value_each();
}

} // namespace tool
