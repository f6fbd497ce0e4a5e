#include "tool/list/view_list.h"

#include <string>
#include <vector>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/list/entry_cells.h"
#include "tool/text_table.h"
#include "workflow/published_names.h"

namespace tool {

namespace {

std::string describe_space(const PublishedView& view) {
    return view.shows_unpublished ? fmt::format("{} (not published)", view.color_space) : view.color_space;
}

std::string describe_standing(const PublishedView& view) {
    std::string words = view.is_default ? "default" : "";
    if (view.is_shared)
        words += words.empty() ? "shared" : ", shared";
    return words;
}

void print_table(const std::vector<PublishedView>& views, std::string title, Console& console) {
    TextTable table({"#", std::move(title), "display", "view of the display", "colour space",
                     "named transform", "view transform", "looks", ""});
    for (const PublishedView& view : views)
        table.add_row({std::to_string(table.count_rows()), view.label, view.display, view.view,
                       describe_space(view), view.named_transform, view.view_transform, view.looks,
                       describe_standing(view)});
    table.drop_empty_columns();
    table.print(console);
}

void add_to_json(const PublishedView& view, nlohmann::ordered_json& item) {
    item["label"] = view.label;
    item["display"] = view.display;
    item["view"] = view.view;
    item["color_space"] = view.color_space;
    item["color_space_published"] = !view.color_space.empty() && !view.shows_unpublished;
    item["named_transform"] = view.named_transform;
    item["view_transform"] = view.view_transform;
    item["looks"] = view.looks;
    item["shared"] = view.is_shared;
    item["description"] = view.description;
    item["default"] = view.is_default;
}

} // namespace

void print_views(Console& console, bool with_inactive) {
    print_table(get_published_views(), "view", console);
    const std::vector<PublishedView> hidden = get_hidden_views();
    if (hidden.empty())
        return;
    if (with_inactive) {
        console.print("");
        print_table(hidden, "inactive view", console);
    } else {
        console.print(fmt::format("Inactive, and therefore not published: {}; --inactive lists them.",
                                  count_things(hidden.size(), "view")));
    }
}

void add_views_to_json(nlohmann::ordered_json& answer) {
    auto& published = answer["views"] = nlohmann::ordered_json::array();
    for (const PublishedView& view : get_published_views()) {
        nlohmann::ordered_json item;
        item["position"] = published.size();
        add_to_json(view, item);
        published.push_back(std::move(item));
    }
    auto& inactive = answer["inactive_views"] = nlohmann::ordered_json::array();
    for (const PublishedView& view : get_hidden_views()) {
        nlohmann::ordered_json item;
        add_to_json(view, item);
        inactive.push_back(std::move(item));
    }
}

} // namespace tool
