#pragma once

#include "tool/row_model.h"
#include "workflow/correction.h"
#include "workflow/correction_file.h"
#include "workflow/correction_text.h"

namespace tool {

/// Three numbers, or one.
inline Cell make_cell(const float (&values)[3]) {
    return {workflow::format_triple(values),
            Json(std::vector<Json>{workflow::shorten(values[0]), workflow::shorten(values[1]),
                                   workflow::shorten(values[2])})};
}
inline Cell make_cell(float value) {
    return {workflow::format_number(value), workflow::shorten(value)};
}

/// Adds the numbers of the color correction that `get` returns for a row.
template <class Row, class Get>
void add_numbers(RowModel<Row>& rows, const Get& get) {
    rows.add("slope", "slope", [get](const Row& row) { return make_cell(get(row).slope); });
    rows.add("offset", "offset", [get](const Row& row) { return make_cell(get(row).offset); });
    rows.add("power", "power", [get](const Row& row) { return make_cell(get(row).power); });
    rows.add("saturation", "saturation", [get](const Row& row) { return make_cell(get(row).saturation); });
}

/// The color corrections of a file.
inline RowModel<workflow::Correction> make_correction_rows() {
    RowModel<workflow::Correction> rows(RowModel<workflow::Correction>::NUMBERED);
    rows.add("id", "id", &workflow::Correction::id);
    add_numbers(rows, [](const workflow::Correction& correction) { return correction; });
    return rows;
}

} // namespace tool
