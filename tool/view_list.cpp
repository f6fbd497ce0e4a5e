#include "tool/view_list.h"

#include <string>
#include <vector>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/text_table.h"
#include "workflow/published_names.h"

namespace tool {

namespace {

std::string describe_space(const workflow::PublishedView& view) {
    return view.shows_unpublished ? fmt::format("{} (not published)", view.color_space) : view.color_space;
}

std::string describe_flags(const workflow::PublishedView& view) {
    std::string words = view.is_default ? "default" : "";
    if (view.is_shared)
        words += words.empty() ? "shared" : ", shared";
    return words;
}

void print_table(const std::vector<workflow::PublishedView>& views, std::string title, Console& console) {
    TextTable table({"#", std::move(title), "display", "view of the display", "color space",
                     "named transform", "view transform", "looks", ""});
    for (const workflow::PublishedView& view : views)
        table.add_row({std::to_string(table.count_rows()), view.label, view.display, view.view,
                       describe_space(view), view.named_transform, view.view_transform, view.looks,
                       describe_flags(view)});
    table.drop_empty_columns();
    table.print(console);
}

void add_to_json(const workflow::PublishedView& view, Json& item) {
    item.set("label", view.label);
    item.set("display", view.display);
    item.set("view", view.view);
    item.set("color_space", view.color_space);
    item.set("color_space_published", !view.color_space.empty() && !view.shows_unpublished);
    item.set("named_transform", view.named_transform);
    item.set("view_transform", view.view_transform);
    item.set("looks", view.looks);
    item.set("shared", view.is_shared);
    item.set("description", view.description);
    item.set("default", view.is_default);
}

} // namespace

void print_views(Console& console, bool with_inactive) {
    print_table(workflow::get_published_views(), "view", console);
    const std::vector<workflow::PublishedView> hidden = workflow::get_hidden_views();
    if (hidden.empty())
        return;
    if (with_inactive) {
        console.print("");
        print_table(hidden, "inactive view", console);
    } else {
        console.print(
            fmt::format("Inactive: {}; --inactive lists them.", count_things(hidden.size(), "view")));
    }
}

void add_views_to_json(Json& answer) {
    Json published = Json::array();
    for (const workflow::PublishedView& view : workflow::get_published_views()) {
        Json item;
        item.set("position", published.size());
        add_to_json(view, item);
        published.push(item);
    }
    answer.set("views", published);
    Json inactive = Json::array();
    for (const workflow::PublishedView& view : workflow::get_hidden_views()) {
        Json item;
        add_to_json(view, item);
        inactive.push(item);
    }
    answer.set("inactive_views", inactive);
}

} // namespace tool
