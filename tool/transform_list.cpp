#include "tool/transform_list.h"

#include <string>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/text_table.h"
#include "workflow/published_names.h"

namespace tool {

namespace {

using NamedTransform = workflow::DescribedTransform;

const char* describe_directions(const NamedTransform& transform) {
    if (transform.has_forward && transform.has_inverse)
        return "both";
    return transform.has_forward ? "forward" : "inverse";
}

} // namespace

void print_named_transforms(Console& console, bool with_inactive) {
    TextTable table({"named transform", "family", "directions", "encoding", "categories", "aliases", ""});
    std::size_t left_out = 0;
    for (const NamedTransform& transform : workflow::get_named_transforms()) {
        if (!transform.is_active && !with_inactive) {
            ++left_out;
            continue;
        }
        table.add_row({transform.name, transform.family, describe_directions(transform),
                       transform.facts.encoding, join(transform.facts.categories),
                       join(transform.facts.aliases), transform.is_active ? "" : "inactive"});
    }
    table.drop_empty_columns();
    if (table.count_rows() > 0)
        table.print(console);
    else
        console.print(left_out > 0 ? "No named transform is active." : "No named transforms.");
    if (left_out > 0)
        console.print(
            fmt::format("Inactive: {}; --inactive lists them.", count_things(left_out, "named transform")));
}

bool has_named_transforms() {
    return !workflow::get_named_transforms().empty();
}

void add_named_transforms_to_json(Json& answer) {
    Json list = Json::array();
    for (const NamedTransform& transform : workflow::get_named_transforms()) {
        Json item = {{"name", transform.name},
                     {"family", transform.family},
                     {"active", transform.is_active},
                     {"forward", transform.has_forward},
                     {"inverse", transform.has_inverse}};
        add_facts(transform.facts, item);
        list.push(item);
    }
    answer.set("named_transforms", list);
}

} // namespace tool
