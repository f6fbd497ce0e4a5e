#include "workflow/published_cdls.h"

#include <string_view>
#include <unordered_map>

#include "workflow/cdl_library.h"
#include "workflow/session.h"

namespace workflow {

std::vector<PublishedCdl> get_published_cdls(const Session& session) {
    const ColorIOManager& manager = *ColorIOManager::get_instance();
    std::unordered_map<std::string_view, const ColorIOManager::ColorDecisionListDef*> records;
    for (const auto& record : manager.get_tavelion_color_decision_lists())
        records.emplace(record.name.view(), &record);
    std::vector<PublishedCdl> cdls;
    for (const CoreString& name : manager.get_CDL_names())
        if (const auto found = records.find(name.view()); found != records.end()) {
            const ColorIOManager::ColorDecisionListDef& record = *found->second;
            const auto [file, id] =
                session.get_cdl_library().find_origin(record.file.get_data(), record.cccid.get_data());
            cdls.push_back({make_correction(record), file, id, record.is_builtin});
        }
    return cdls;
}

std::string describe_source(const PublishedCdl& cdl) {
    if (cdl.is_builtin)
        return "built in";
    return cdl.file_id.empty() ? cdl.file : cdl.file + ":" + cdl.file_id;
}

} // namespace workflow
