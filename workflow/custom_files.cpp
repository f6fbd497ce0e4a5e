#include "workflow/custom_files.h"

#include <algorithm>

#include "colorio/color_io_manager.h"

namespace workflow {

std::vector<std::string> get_custom_files() {
    const ColorIOManager& manager = *ColorIOManager::get_instance();
    std::vector<std::string> files;
    const auto add = [&files](const CoreString& file) {
        if (!file.is_empty())
            files.emplace_back(file.view());
    };
    for (const ColorIOManager::ColorSpaceDef& space : manager.get_tavelion_color_spaces()) {
        add(space.lut_file);
        add(space.cdl_file);
    }
    for (const ColorIOManager::ColorDecisionListDef& cdl : manager.get_tavelion_color_decision_lists())
        add(cdl.file);
    return files;
}

bool has_custom_files(const std::string& library_path) {
    const std::vector<std::string> files = get_custom_files();
    return std::any_of(files.begin(), files.end(),
                       [&](const std::string& file) { return file != library_path; });
}

} // namespace workflow
