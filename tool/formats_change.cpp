#include "tool/formats_change.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "standalone/standalone_app.h"
#include "tool/console.h"
#include "workflow/format_associations.h"
#include "workflow/session.h"

namespace tool {

void note_mapping_file(const workflow::Session& session, Console& console) {
    const StandaloneApp& app = session.get_preferences().get_app();
    const CoreString& path = app.get_color_space_by_extension_file_path();
    if (app.get_use_color_space_by_extension_file() != 0 && !path.is_empty())
        console.report(diagnostics::make_warning(
            diagnostics::Code::FORMAT_SHADOWED,
            fmt::format("the preferences use the mapping file '{}' instead of these associations",
                        path.view())));
}

void finish_format_change(workflow::Session& session, const std::string& category, Console& console) {
    console.report(session.save_preferences());
    const workflow::FormatAssociation changed =
        workflow::get_format_associations()[workflow::find_category(category)];
    console.print(fmt::format("{} ({}): {}", changed.category, fmt::join(changed.extensions, ", "),
                              changed.color_space));
    for (const std::string& note : workflow::find_shadowed_extensions(category))
        console.report(diagnostics::make_warning(diagnostics::Code::FORMAT_SHADOWED, note));
    note_mapping_file(session, console);
}

} // namespace tool
