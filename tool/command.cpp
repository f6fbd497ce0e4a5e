#include "tool/command.h"

namespace tool {

void SessionCommand::add_session_options() {
    add_config_option();
    add_preference_reading_options();
}

void SessionCommand::add_preference_reading_options() {
    add_preference_options();
    options.add_flag("--no-prefs", session_options.no_preferences, "ignore the preferences file")
        .excludes(options.get("--prefs"));
}

void SessionCommand::add_preference_options() {
    options.add("--prefs", session_options.preferences_path,
                "preferences file to use (default: see 'colorio prefs path')", "FILE");
    options.add_flag("-v,--verbose", session_options.verbose, "show every message of the log");
}

void SessionCommand::add_config_option() {
    session_options.builtin_only = false;
    options.add("--config", session_options.config_path,
                "OCIO config: a file, an .ocioz archive or ocio://NAME (default: $OCIO, then the config of "
                "the preferences, then the built-in config)",
                "CONFIG");
    options
        .add("--context", session_options.context,
             "value of a context variable; overrides the environment; can be repeated", "KEY=VALUE")
        .one_value_each();
}

} // namespace tool
