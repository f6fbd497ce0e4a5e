#include "tool/correction_cells.h"

#include "tool/console.h"
#include "tool/text_table.h"
#include "workflow/correction_file.h"
#include "workflow/correction_text.h"
#include "workflow/published_cdls.h"

namespace tool {

namespace {

Json triple_to_json(const float (&values)[3]) {
    return Json(std::vector<Json>{workflow::shorten(values[0]), workflow::shorten(values[1]),
                                  workflow::shorten(values[2])});
}

std::string describe_origin(const workflow::PublishedCdl& cdl) {
    if (cdl.is_builtin)
        return "built in";
    return cdl.file_id.empty() ? cdl.file : cdl.file + ":" + cdl.file_id;
}

} // namespace

void report_unread_elements(const workflow::Correction& correction, Console& console) {
    diagnostics::Diagnostics notes;
    add_unread_elements(correction, notes);
    console.report(notes);
}

const std::vector<std::string> CORRECTION_TITLES = {"id", "slope", "offset", "power", "saturation"};

std::vector<std::string> make_cells(const workflow::Correction& correction) {
    return {correction.id, workflow::format_triple(correction.slope),
            workflow::format_triple(correction.offset), workflow::format_triple(correction.power),
            workflow::format_number(correction.saturation)};
}

Json numbers_to_json(const workflow::Correction& correction) {
    return {{"slope", triple_to_json(correction.slope)},
            {"offset", triple_to_json(correction.offset)},
            {"power", triple_to_json(correction.power)},
            {"saturation", workflow::shorten(correction.saturation)}};
}

void print_cdls(Console& console) {
    TextTable table({"#", "CDL", "slope", "offset", "power", "saturation", "from"});
    for (const workflow::PublishedCdl& cdl : workflow::get_published_cdls()) {
        std::vector<std::string> cells = make_cells(cdl.correction);
        cells.insert(cells.begin(), std::to_string(table.count_rows()));
        cells.push_back(describe_origin(cdl));
        table.add_row(cells);
    }
    table.print(console);
}

Json cdls_to_json() {
    Json list = Json::array();
    for (const workflow::PublishedCdl& cdl : workflow::get_published_cdls()) {
        Json item = {{"position", list.size()}, {"name", cdl.correction.id}};
        item.update(numbers_to_json(cdl.correction));
        item.set("file", cdl.file);
        item.set("file_id", cdl.file_id);
        item.set("builtin", cdl.is_builtin);
        list.push(item);
    }
    return list;
}

} // namespace tool
