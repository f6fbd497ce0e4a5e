#include "tool/formats_change.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tool/console.h"
#include "workflow/format_associations.h"
#include "workflow/session.h"

namespace tool {

void finish_format_change(workflow::Session& session, const std::string& category, Console& console) {
    console.report(session.save_preferences());
    const workflow::FormatAssociation changed =
        workflow::get_format_associations()[workflow::find_category(category)];
    console.print(fmt::format("{} ({}): {}", changed.category, fmt::join(changed.extensions, ", "),
                              changed.color_space));
    console.report(workflow::find_shadowed_extensions(category));
    if (const auto warning = workflow::find_overriding_mapping(session))
        console.report(*warning);
}

} // namespace tool
