#pragma once

#include <string>

#include "tool/options.h"
#include "workflow/file_space.h"

namespace workflow {
class Session;
}

namespace tool {

class Console;

/// What the user wants of the rule for the color space of a file.
struct SourceSpaceChoice {
    bool explains = false;  ///< Print every step of the decision.
    bool is_strict = false; ///< Fail rather than assume.
};

/// Adds --why and --strict.
void add_source_space_options(Options& options, SourceSpaceChoice& choice);

/// The color space of the image at `path` by the one rule. Reports what was found unless --why prints it.
/// Throws diagnostics::Failure when nothing is found, and under --strict when it is assumed. The tags of an
/// image that cannot be read are left out.
workflow::FileSpace find_source_space(const workflow::Session& session, const std::string& path,
                                      const SourceSpaceChoice& choice, Console& console);

/// Reports a color space that was found elsewhere, as above.
void report_source_space(const std::string& path, const workflow::FileSpace& found,
                         const SourceSpaceChoice& choice, Console& console);

/// Prints the steps of the decision, as --why does.
void print_source_steps(const workflow::FileSpace& found, Console& console);

} // namespace tool
