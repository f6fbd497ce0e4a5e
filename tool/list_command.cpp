#include <algorithm>
#include <string>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/published_rows.h"
#include "tool/report_command.h"

namespace tool {

namespace {

using Spaces = std::vector<workflow::DescribedSpace>;
using Transforms = std::vector<workflow::DescribedTransform>;
using workflow::PublishedRole;

constexpr char EXAMPLES[] = R"(  colorio list
  colorio list spaces --config show.ocio
  colorio list views --json
  colorio list spaces --inactive --config aces.ocio)";

constexpr char ALL[] = "all";

/// Prints a table without the columns that are empty.
template <class Row>
void print_rows(const RowModel<Row>& model, const std::vector<Row>& rows, Console& console) {
    TextTable table = model.make_table(rows);
    table.drop_empty_columns();
    table.print(console);
}

void print_count_of_inactive(std::size_t count, const char* singular, Console& console) {
    console.print(fmt::format("Inactive: {}; --inactive lists them.", count_things(count, singular)));
}

/// Prints the published rows, and below them the inactive ones or their number.
template <class Row>
void print_both(const RowModel<Row>& model, const std::vector<Row>& published,
                const RowModel<Row>& inactive_model, const std::vector<Row>& inactive, bool with_inactive,
                const char* singular, Console& console) {
    print_rows(model, published, console);
    if (inactive.empty())
        return;
    if (!with_inactive)
        return print_count_of_inactive(inactive.size(), singular, console);
    console.print("");
    print_rows(inactive_model, inactive, console);
}

void print_spaces(const workflow::Session&, Console& console, bool with_inactive) {
    const Spaces published = workflow::get_described_spaces(), inactive = workflow::get_inactive_spaces();
    const auto is_of_display = [](const auto& space) { return space.is_display_referred; };
    const bool has_both = std::any_of(published.begin(), published.end(), is_of_display) ||
                          std::any_of(inactive.begin(), inactive.end(), is_of_display);
    print_both(make_space_rows(true, has_both), published, make_space_rows(false, has_both), inactive,
               with_inactive, "color space", console);
}

void add_spaces_to_json(const workflow::Session&, Json& answer) {
    answer.set("spaces", make_space_rows(true, false).make_array(workflow::get_described_spaces()));
    answer.set("inactive_spaces", make_space_rows(false, false).make_array(workflow::get_inactive_spaces()));
}

void print_named_transforms(const workflow::Session&, Console& console, bool with_inactive) {
    Transforms listed = workflow::get_named_transforms();
    const std::size_t all = listed.size();
    if (!with_inactive)
        listed.erase(std::remove_if(listed.begin(), listed.end(),
                                    [](const auto& transform) { return !transform.is_active; }),
                     listed.end());
    const std::size_t left_out = all - listed.size();
    if (listed.empty())
        console.print(left_out > 0 ? "No named transform is active." : "No named transforms.");
    else
        print_rows(make_transform_rows(), listed, console);
    if (left_out > 0)
        print_count_of_inactive(left_out, "named transform", console);
}

void add_named_transforms_to_json(const workflow::Session&, Json& answer) {
    answer.set("named_transforms", make_transform_rows().make_array(workflow::get_named_transforms()));
}

bool has_named_transforms() {
    return !workflow::get_named_transforms().empty();
}

void print_views(const workflow::Session&, Console& console, bool with_inactive) {
    print_both(make_view_rows(true), workflow::get_published_views(), make_view_rows(false),
               workflow::get_hidden_views(), with_inactive, "view", console);
}

void add_views_to_json(const workflow::Session&, Json& answer) {
    answer.set("views", make_view_rows(true).make_array(workflow::get_published_views()));
    answer.set("inactive_views", make_view_rows(false).make_array(workflow::get_hidden_views()));
}

void print_roles(const workflow::Session&, Console& console, bool) {
    RowModel<PublishedRole> model;
    model.add("role", nullptr, &PublishedRole::role)
        .add("color space", nullptr, &PublishedRole::color_space)
        .add("note", nullptr, [](const auto& role) { return role.is_in_config ? "" : "not in the config"; });
    print_rows(model, workflow::get_published_roles(), console);
}

void add_roles_to_json(const workflow::Session&, Json& answer) {
    Json roles = Json::object(), from_config = roles;
    for (const PublishedRole& role : workflow::get_published_roles()) {
        roles.set(role.role, role.color_space);
        from_config.set(role.role, role.is_in_config);
    }
    answer.set("roles", roles);
    answer.set("roles_in_config", from_config);
}

bool is_always_listed() {
    return true;
}

/// One of the things that can be listed.
struct Topic {
    const char* name;
    void (*print)(const workflow::Session& session, Console& console, bool with_inactive);
    void (*add_to_json)(const workflow::Session& session, Json& answer);
    bool (*is_listed)() = is_always_listed; ///< False: shown as a table only when the user names the topic.
};
constexpr Topic TOPICS[] = {
    {"spaces", print_spaces, add_spaces_to_json},
    {"named-transforms", print_named_transforms, add_named_transforms_to_json, has_named_transforms},
    {"views", print_views, add_views_to_json},
    {"roles", print_roles, add_roles_to_json},
    {"cdls",
     [](const workflow::Session& session, Console& console, bool) {
         make_cdl_rows().make_table(workflow::get_published_cdls(session)).print(console);
     },
     [](const workflow::Session& session, Json& answer) {
         answer.set("cdls", make_cdl_rows().make_array(workflow::get_published_cdls(session)));
     }},
};

class ListCommand : public ReportCommand {
public:
    explicit ListCommand(Options& program)
        : ReportCommand(program, "list",
                        "List the color spaces, named transforms, views, roles and CDLs of an OCIO config",
                        EXAMPLES) {
        std::vector<std::string> names = {ALL};
        for (const Topic& topic : TOPICS)
            names.push_back(topic.name);
        options.add("what", wanted, "what to list (default: all)").choices(names);
        add_session_options();
        options.add_flag(
            "--inactive", with_inactive,
            "also list inactive color spaces, named transforms and views; JSON always contains them");
        add_json_option();
    }

private:
    void print(const workflow::Session& session, Console& console) const override {
        console.print(fmt::format("From {}.", describe(session.get_source())));
        for (const Topic& topic : TOPICS)
            if (wanted == topic.name || (wanted == ALL && topic.is_listed())) {
                console.print("");
                topic.print(session, console, with_inactive);
            }
    }

    Json to_json(const workflow::Session& session) const override {
        Json answer = {{"config", tool::to_json(session.get_source())}};
        for (const Topic& topic : TOPICS)
            if (wanted == ALL || wanted == topic.name)
                topic.add_to_json(session, answer);
        return answer;
    }

    std::string wanted = ALL;
    bool with_inactive = false;
};

} // namespace

const MakeCommand make_list_command = make_command<ListCommand>;

} // namespace tool
