#include <string>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/correction_cells.h"
#include "tool/json_output.h"
#include "tool/report_command.h"
#include "tool/space_list.h"
#include "tool/text_table.h"
#include "tool/transform_list.h"
#include "tool/view_list.h"
#include "workflow/published_names.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio list
  colorio list spaces --config show.ocio
  colorio list views --json
  colorio list spaces --inactive --config aces.ocio)";

constexpr char ALL[] = "all";

void print_roles(Console& console, bool) {
    TextTable table({"role", "color space", "note"});
    for (const workflow::PublishedRole& role : workflow::get_published_roles())
        table.add_row({role.role, role.color_space, role.is_in_config ? "" : "not in the config"});
    table.drop_empty_columns();
    table.print(console);
}

void add_roles_to_json(Json& answer) {
    Json roles = Json::object();
    Json from_config = Json::object();
    for (const workflow::PublishedRole& role : workflow::get_published_roles()) {
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
    void (*print)(Console& console, bool with_inactive);
    void (*add_to_json)(Json& answer);
    bool (*is_listed)() = is_always_listed; ///< False: shown as a table only when the user names the topic.
};
constexpr Topic TOPICS[] = {
    {"spaces", print_spaces, add_spaces_to_json},
    {"named-transforms", print_named_transforms, add_named_transforms_to_json, has_named_transforms},
    {"views", print_views, add_views_to_json},
    {"roles", print_roles, add_roles_to_json},
    {"cdls", [](Console& console, bool) { print_cdls(console); },
     [](Json& answer) { answer.set("cdls", cdls_to_json()); }},
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
        add_session_options(options, session_options);
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
                topic.print(console, with_inactive);
            }
    }

    Json to_json(const workflow::Session& session) const override {
        Json answer = {{"config", tool::to_json(session.get_source())}};
        for (const Topic& topic : TOPICS)
            if (wanted == ALL || wanted == topic.name)
                topic.add_to_json(answer);
        return answer;
    }

    std::string wanted = ALL;
    bool with_inactive = false;
};

} // namespace

std::unique_ptr<Command> make_list_command(Options& program) {
    return std::make_unique<ListCommand>(program);
}

} // namespace tool
