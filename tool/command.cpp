#include "tool/command.h"

#include <string>

#include "tool/color_session.h"

namespace tool {

Command::Command(CLI::App& program, const char* name, const char* description, const char* examples)
    : options(program.add_subcommand(name, description)) {
    options->footer(std::string("\nExamples:\n") + examples);
}

void add_session_options(CLI::App& options, SessionOptions& session) {
    options.add_option("--config", session.config_path,
                       "OpenColorIO configuration file; without it the one that $OCIO names, or the built-in "
                       "one");
    options.add_flag("-v,--verbose", session.verbose, "Show every message of the colour management");
}

} // namespace tool
