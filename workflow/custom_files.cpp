#include "workflow/custom_files.h"

#include <algorithm>

#include "colorio/color_io_manager.h"
#include "workflow/cdl_library.h"
#include "workflow/session.h"

namespace workflow {

std::vector<std::string> get_custom_files(const Session& session) {
    const ColorIOManager& manager = *ColorIOManager::get_instance();
    std::vector<std::string> files;
    const auto add = [&](const CoreString& file) {
        if (!file.is_empty())
            files.push_back(session.get_cdl_library().find_origin(file.get_data(), "").file);
    };
    for (const ColorIOManager::ColorSpaceDef& space : manager.get_tavelion_color_spaces()) {
        add(space.lut_file);
        add(space.cdl_file);
    }
    for (const ColorIOManager::ColorDecisionListDef& cdl : manager.get_tavelion_color_decision_lists())
        add(cdl.file);
    return files;
}

bool has_custom_files(const Session& session, const std::string& library_path) {
    const std::vector<std::string> files = get_custom_files(session);
    return std::any_of(files.begin(), files.end(),
                       [&](const std::string& file) { return file != library_path; });
}

} // namespace workflow
