#include "tool/source_space.h"

#include <filesystem>
#include <optional>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "tool/console.h"
#include "workflow/format_associations.h"
#include "workflow/session.h"

namespace tool {

namespace {

using diagnostics::Code;

std::string get_file_name(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

/// Empty if the image cannot be read: it is read again for its pixels, and the error is reported then.
std::optional<image::ColorTags> try_to_read_tags(const std::string& path) {
    try {
        return workflow::read_color_tags(path);
    } catch (const diagnostics::Failure&) {
        return std::nullopt;
    }
}

} // namespace

void add_source_space_options(Options& options, SourceSpaceChoice& choice) {
    options.add_flag("--why", choice.explains, "show how the source and the destination were found");
    options.add_flag("--strict", choice.is_strict, "fail if the color space would be assumed");
}

workflow::FileSpace find_source_space(const workflow::Session& session, const std::string& path,
                                      const SourceSpaceChoice& choice, Console& console) {
    if (const auto warning = workflow::find_unused_mapping(session))
        console.report(*warning);
    workflow::FileSpace found =
        workflow::find_file_space(path, try_to_read_tags(path), session.get_config_name());
    report_source_space(path, found, choice, console);
    return found;
}

void report_source_space(const std::string& path, const workflow::FileSpace& found,
                         const SourceSpaceChoice& choice, Console& console) {
    const std::string name = get_file_name(path);
    console.report(found.warnings);
    if (found.color_space.empty() || (found.is_assumed && choice.is_strict))
        throw diagnostics::Failure(with_hint(
            make_file_error(Code::COLOR_SPACE_ASSUMED,
                            fmt::format("'{}': nothing says which color space it is in", name), path),
            "name the color space of the image with --from"));
    const std::string text = fmt::format("{}: {}, {}", name, found.color_space, found.reason);
    if (found.is_assumed)
        console.report(with_hint(make_warning(Code::COLOR_SPACE_ASSUMED, text),
                                 "name the color space of the image with --from"));
    else if (!choice.explains)
        console.report(make_note(Code::COLOR_SPACE_CHOSEN, text));
}

void print_source_steps(const workflow::FileSpace& found, Console& console) {
    console.print("  --from:        not given");
    for (const workflow::FileSpaceStep& step : found.steps)
        console.print(fmt::format("  {:<15}{}", step.name + ":", step.answer));
}

} // namespace tool
