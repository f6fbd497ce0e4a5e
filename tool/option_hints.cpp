#include "tool/option_hints.h"

#include "workflow/session.h"

namespace tool {

diagnostics::Diagnostic add_config_hint(diagnostics::Diagnostic error, const workflow::ConfigSource& source) {
    if (source.kind == workflow::ConfigSource::PREFERENCES && error.hint.empty())
        error.hint = "use another config with --config, or ignore the preferences with --no-prefs";
    return error;
}

diagnostics::Diagnostic describe_with_options(const diagnostics::Failure& failure) {
    diagnostics::Diagnostic worst = failure.get_worst();
    if (const auto* config = dynamic_cast<const workflow::ConfigFailure*>(&failure))
        return add_config_hint(std::move(worst), config->get_source());
    if (dynamic_cast<const workflow::NoHomeFailure*>(&failure))
        worst.hint += ", or use --prefs";
    if (worst.code == diagnostics::Code::DISPLAY_MISSING)
        worst.hint = "use --screenshot, which needs no display";
    return name_source_option(std::move(worst));
}

diagnostics::Diagnostic name_source_option(diagnostics::Diagnostic report) {
    if (report.code == diagnostics::Code::COLOR_SPACE_ASSUMED && !report.hint.empty())
        report.hint += " with --from";
    return report;
}

} // namespace tool
