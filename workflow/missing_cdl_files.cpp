#include "workflow/missing_cdl_files.h"

#include <string>
#include <utility>

#include <fmt/format.h>

#include "colorio/color_io_manager.h"
#include "diagnostics/failure.h"
#include "host/sys/sys_filesystem.h"

namespace workflow {

diagnostics::Diagnostics find_missing_cdl_files() {
    diagnostics::Diagnostics warnings;
    for (const ColorIOManager::ColorDecisionListDef& cdl :
         ColorIOManager::get_instance()->get_tavelion_color_decision_lists()) {
        const std::string file = cdl.file.get_data();
        if (cdl.is_builtin || file.empty() || SysFilesystem::file_exists(cdl.file))
            continue;
        diagnostics::Diagnostic warning = diagnostics::make_file_warning(
            diagnostics::Code::FILE_MISSING,
            fmt::format("its file '{}' does not exist; its stored values are used", file), file);
        warning.subject = cdl.name.get_data();
        warnings.push_back(std::move(warning));
    }
    return warnings;
}

} // namespace workflow
