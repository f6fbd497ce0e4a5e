#pragma once

#include <string>

#include "tool/options.h"
#include "workflow/file_space.h"

namespace tool {

class Console;

/// What the user wants of the rule for the color space of a file.
struct SourceSpaceChoice {
    bool explains = false;  ///< Print every step of the decision.
    bool is_strict = false; ///< Fail rather than assume.
};

/// Adds --why and --strict.
void add_source_space_options(Options& options, SourceSpaceChoice& choice);

/// Reports the warnings and the color space found for the image at `path`, unless --why prints it. Throws
/// diagnostics::Failure like workflow::describe_file_space.
void report_source_space(const std::string& path, const workflow::FileSpace& found,
                         const SourceSpaceChoice& choice, Console& console);

/// Prints "destination:   ...", a line of an explanation.
void print_decision(const std::string& what, const std::string& answer, Console& console);

/// Prints the steps of the decision, as --why does.
void print_source_steps(const workflow::FileSpace& found, Console& console);

} // namespace tool
