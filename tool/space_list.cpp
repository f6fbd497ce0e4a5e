#include "tool/space_list.h"
#include "tool/json.h"

#include <map>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "colorio/color_io_inspection.h"
#include "tool/console.h"
#include "tool/entry_cells.h"
#include "tool/text_table.h"
#include "workflow/published_names.h"

namespace tool {

namespace {

using Space = ColorIOInspection::ColorSpace;

/// The color spaces of the active config: published and inactive ones.
class SpaceList {
public:
    SpaceList() {
        for (Space& space : spaces) {
            by_name.emplace(space.name.get_data(), &space);
            has_display_reference = has_display_reference || space.is_display_referred;
            if (!space.is_active)
                inactive.push_back(&space);
        }
    }

    const Space& get_facts(const workflow::PublishedSpace& published) const {
        static const Space NOTHING;
        const auto found = by_name.find(published.name);
        return found == by_name.end() ? NOTHING : *found->second;
    }

    const std::vector<const Space*>& get_inactive() const { return inactive; }

    /// "scene-referred" or "display-referred" only in configs that have both reference spaces.
    std::string describe_kind(const Space& space) const {
        std::string kind;
        if (has_display_reference)
            kind = space.is_display_referred ? "display-referred" : "scene-referred";
        if (space.is_data)
            kind += kind.empty() ? "data" : ", data";
        return kind;
    }

private:
    CoreVector<Space> spaces = ColorIOInspection::get_color_spaces();
    std::map<std::string, const Space*> by_name;
    std::vector<const Space*> inactive;
    bool has_display_reference = false;
};

void print_published(const SpaceList& list, Console& console) {
    TextTable table({"#", "color space", "family", "label", "kind", "encoding", "categories", "aliases"});
    for (const workflow::PublishedSpace& space : workflow::get_published_spaces()) {
        const Space& facts = list.get_facts(space);
        table.add_row({std::to_string(table.count_rows()), space.name, space.family, space.label,
                       list.describe_kind(facts), facts.encoding.get_data(), join_texts(facts.categories),
                       join_texts(facts.aliases)});
    }
    table.drop_empty_columns();
    table.print(console);
}

void print_inactive(const SpaceList& list, Console& console) {
    TextTable table({"inactive color space", "family", "kind", "encoding", "categories", "aliases"});
    for (const Space* space : list.get_inactive())
        table.add_row({space->name.get_data(), space->family.get_data(), list.describe_kind(*space),
                       space->encoding.get_data(), join_texts(space->categories),
                       join_texts(space->aliases)});
    table.drop_empty_columns();
    console.print("");
    table.print(console);
}

Json facts_to_json(const Space& facts, Json item) {
    item.set("reference", facts.is_display_referred ? "display" : "scene");
    item.set("data", facts.is_data);
    add_entry_to_json(facts, item);
    return item;
}

} // namespace

void print_spaces(Console& console, bool with_inactive) {
    const SpaceList list;
    print_published(list, console);
    if (list.get_inactive().empty())
        return;
    if (with_inactive)
        print_inactive(list, console);
    else
        console.print(fmt::format("Inactive: {}; --inactive lists them.",
                                  count_things(list.get_inactive().size(), "color space")));
}

void add_spaces_to_json(Json& answer) {
    const SpaceList list;
    Json published = Json::array();
    for (const workflow::PublishedSpace& space : workflow::get_published_spaces())
        published.push(facts_to_json(list.get_facts(space), {{"position", published.size()},
                                                             {"name", space.name},
                                                             {"family", space.family},
                                                             {"label", space.label}}));
    answer.set("spaces", published);
    Json inactive = Json::array();
    for (const Space* space : list.get_inactive())
        inactive.push(
            facts_to_json(*space, {{"name", space->name.get_data()}, {"family", space->family.get_data()}}));
    answer.set("inactive_spaces", inactive);
}

} // namespace tool
