#pragma once

#include <string>

#include "diagnostics/failure.h"

namespace workflow {
struct ConfigSource;
} // namespace workflow

namespace tool {

// Libraries do not know the options and commands of this program: their errors get hints about them here.

/// The error of a config that cannot be used. One that the preferences name can be replaced by options.
diagnostics::Diagnostic add_config_hint(diagnostics::Diagnostic error, const workflow::ConfigSource& source);

/// The worst diagnostic of a failure, with the options that help.
diagnostics::Diagnostic describe_with_options(const diagnostics::Failure& failure);

/// A report on the color space of an image, with the option that names it in its hint.
diagnostics::Diagnostic name_source_option(diagnostics::Diagnostic report);

/// Calls `action`, and adds the hint to a failure with that code which has none.
template <class Action>
void hint_at(diagnostics::Code code, const std::string& hint, const Action& action) {
    try {
        action();
    } catch (const diagnostics::Failure& failure) {
        const diagnostics::Diagnostic& worst = failure.get_worst();
        if (worst.code != code || !worst.hint.empty())
            throw;
        throw diagnostics::Failure(with_hint(worst, hint));
    }
}

} // namespace tool
