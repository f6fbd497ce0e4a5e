#include "tool/correction_cells.h"

#include "tool/console.h"
#include "workflow/correction_file.h"
#include "workflow/correction_text.h"

namespace tool {

namespace {

Json triple_to_json(const float (&values)[3]) {
    return Json(std::vector<Json>{workflow::shorten(values[0]), workflow::shorten(values[1]),
                                  workflow::shorten(values[2])});
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

} // namespace tool
