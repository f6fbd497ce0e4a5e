#include "tool/space_list.h"

#include <algorithm>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/text_table.h"
#include "workflow/published_names.h"

namespace tool {

namespace {

using Spaces = std::vector<workflow::DescribedSpace>;

bool has_display_reference(const Spaces& spaces) {
    return std::any_of(spaces.begin(), spaces.end(), [](const auto& one) { return one.is_display_referred; });
}

/// "scene-referred" or "display-referred" only in configs that have both reference spaces.
std::string describe_kind(const workflow::DescribedSpace& space, bool has_both_references) {
    std::string kind;
    if (has_both_references)
        kind = space.is_display_referred ? "display-referred" : "scene-referred";
    if (space.is_data)
        kind += kind.empty() ? "data" : ", data";
    return kind;
}

/// With the position and the label of published color spaces.
void print_table(const Spaces& spaces, bool are_published, bool has_both_references, Console& console) {
    TextTable table({"#", are_published ? "color space" : "inactive color space", "family", "label", "kind",
                     "encoding", "categories", "aliases"});
    for (const workflow::DescribedSpace& space : spaces)
        table.add_row({are_published ? std::to_string(table.count_rows()) : "", space.name, space.family,
                       are_published ? space.label : "", describe_kind(space, has_both_references),
                       space.facts.encoding, join(space.facts.categories), join(space.facts.aliases)});
    table.drop_empty_columns();
    table.print(console);
}

Json to_json(const workflow::DescribedSpace& space, Json item) {
    item.set("reference", space.is_display_referred ? "display" : "scene");
    item.set("data", space.is_data);
    add_facts(space.facts, item);
    return item;
}

} // namespace

void print_spaces(Console& console, bool with_inactive) {
    const Spaces published = workflow::get_described_spaces();
    const Spaces inactive = workflow::get_inactive_spaces();
    const bool has_both_references = has_display_reference(published) || has_display_reference(inactive);
    print_table(published, true, has_both_references, console);
    if (inactive.empty())
        return;
    if (with_inactive) {
        console.print("");
        print_table(inactive, false, has_both_references, console);
    } else {
        console.print(fmt::format("Inactive: {}; --inactive lists them.",
                                  count_things(inactive.size(), "color space")));
    }
}

void add_spaces_to_json(Json& answer) {
    Json published = Json::array();
    for (const workflow::DescribedSpace& space : workflow::get_described_spaces())
        published.push(to_json(space, {{"position", published.size()},
                                       {"name", space.name},
                                       {"family", space.family},
                                       {"label", space.label}}));
    answer.set("spaces", published);
    Json inactive = Json::array();
    for (const workflow::DescribedSpace& space : workflow::get_inactive_spaces())
        inactive.push(to_json(space, {{"name", space.name}, {"family", space.family}}));
    answer.set("inactive_spaces", inactive);
}

} // namespace tool
