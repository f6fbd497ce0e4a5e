#include "workflow/file_space.h"

#include <filesystem>

#include <fmt/format.h>

#include "diagnostics/failure.h"

namespace workflow {

namespace {

constexpr char HINT[] = "name the color space of the image";

} // namespace

diagnostics::Diagnostic describe_file_space(const FileSpace& found, const std::string& path,
                                            bool may_assume) {
    const std::string name = std::filesystem::path(path).filename().string();
    if (!may_assume)
        for (const diagnostics::Diagnostic& warning : found.warnings)
            if (warning.code == diagnostics::Code::COLOR_SPACE_ASSUMED) // its message begins with the name
                throw diagnostics::Failure(with_hint(
                    diagnostics::make_file_error(diagnostics::Code::COLOR_SPACE_ASSUMED,
                                                 "cannot determine the color space of " + warning.message,
                                                 path),
                    HINT));
    if (found.color_space.empty() || (found.is_assumed && !may_assume))
        throw diagnostics::Failure(with_hint(
            diagnostics::make_file_error(diagnostics::Code::COLOR_SPACE_ASSUMED,
                                         fmt::format("cannot determine the color space of '{}'", name), path),
            HINT));
    const std::string text = fmt::format("{}: {}, {}", name, found.color_space, found.reason);
    return found.is_assumed
               ? with_hint(diagnostics::make_warning(diagnostics::Code::COLOR_SPACE_ASSUMED, text), HINT)
               : diagnostics::make_note(diagnostics::Code::COLOR_SPACE_CHOSEN, text);
}

} // namespace workflow
