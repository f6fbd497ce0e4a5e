#include "tool/published_cdls.h"
#include "tool/json.h"

#include "tool/console.h"
#include "tool/correction_cells.h"
#include "tool/text_table.h"
#include "workflow/correction_text.h"

namespace tool {

namespace {

std::string describe_origin(const workflow::PublishedCdl& cdl) {
    if (cdl.is_builtin)
        return "built in";
    return cdl.file_id.empty() ? cdl.file : cdl.file + ":" + cdl.file_id;
}

} // namespace

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
