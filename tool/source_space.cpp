#include "tool/source_space.h"

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/option_hints.h"

namespace tool {

namespace {

/// "quarter, from the tag colorio:ColorSpace 'quarter'".
std::string describe(const workflow::PartSpace& part) {
    if (part.color_space.empty())
        return "that of the image: no tag names a color space of the config";
    return fmt::format("{}, {}{}", part.color_space, part.reason,
                       part.is_data ? "; data, left as it is" : "");
}

} // namespace

void add_source_space_options(Options& options, SourceSpaceChoice& choice) {
    options.add_flag("--why", choice.explains, "show how the source and the destination were found");
    options.add_flag("--strict", choice.is_strict, "fail instead of assuming a color space");
}

void report_source_space(const std::string& path, const workflow::FileSpace& found,
                         const SourceSpaceChoice& choice, Console& console) {
    for (const diagnostics::Diagnostic& warning : found.warnings)
        if (!choice.is_strict || warning.code != diagnostics::Code::COLOR_SPACE_ASSUMED) // else the error
            console.report(name_source_option(warning));
    const diagnostics::Diagnostic report = describe_file_space(found, path, !choice.is_strict);
    if (!choice.explains || report.severity != diagnostics::Severity::NOTE)
        console.report(name_source_option(report));
}

void print_decision(const std::string& what, const std::string& answer, Console& console) {
    console.print(fmt::format("{:<15}{}", what + ":", answer));
}

void print_source_steps(const workflow::FileSpace& found, Console& console) {
    if (found.steps.empty())
        return;
    print_decision("  --from", "  not given", console);
    for (const workflow::FileSpaceStep& step : found.steps)
        print_decision("  " + step.name, "  " + step.answer, console);
    for (const workflow::PartSpace& part : found.parts)
        print_decision("  part " + part.part, "  " + describe(part), console);
}

} // namespace tool
