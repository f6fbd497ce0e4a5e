#include "tool/cdl/published_cdls.h"

#include <string_view>
#include <unordered_map>

#include <nlohmann/json.hpp>

#include "tool/cdl/correction_text.h"
#include "tool/console.h"
#include "tool/text_table.h"

namespace tool {

namespace {

std::string describe_origin(const PublishedCdl& cdl) {
    if (cdl.is_builtin)
        return "built in";
    return cdl.file_id.empty() ? cdl.file : cdl.file + ":" + cdl.file_id;
}

} // namespace

std::vector<PublishedCdl> get_published_cdls() {
    const ColorIOManager& manager = *ColorIOManager::get_instance();
    std::unordered_map<std::string_view, const ColorIOManager::ColorDecisionListDef*> records;
    for (const auto& record : manager.get_tavelion_color_decision_lists())
        records.emplace(record.name.view(), &record);
    std::vector<PublishedCdl> cdls;
    for (const CoreString& name : manager.get_CDL_names())
        if (const auto found = records.find(name.view()); found != records.end()) {
            const ColorIOManager::ColorDecisionListDef& record = *found->second;
            cdls.push_back({make_correction(record), record.file.get_data(), record.cccid.get_data(),
                            record.is_builtin});
        }
    return cdls;
}

void print_cdls(Console& console) {
    TextTable table({"#", "CDL", "slope", "offset", "power", "saturation", "from"});
    for (const PublishedCdl& cdl : get_published_cdls()) {
        std::vector<std::string> cells = make_cells(cdl.correction);
        cells.insert(cells.begin(), std::to_string(table.count_rows()));
        cells.push_back(describe_origin(cdl));
        table.add_row(cells);
    }
    table.print(console);
}

nlohmann::ordered_json cdls_to_json() {
    auto list = nlohmann::ordered_json::array();
    for (const PublishedCdl& cdl : get_published_cdls()) {
        nlohmann::ordered_json item = {{"position", list.size()}, {"name", cdl.correction.id}};
        item.update(numbers_to_json(cdl.correction));
        item["file"] = cdl.file;
        item["file_id"] = cdl.file_id;
        item["builtin"] = cdl.is_builtin;
        list.push_back(item);
    }
    return list;
}

} // namespace tool
