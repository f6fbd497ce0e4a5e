#include "tool/command.h"

#include <string>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tool/cdl/published_cdls.h"
#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/list/space_list.h"
#include "tool/list/transform_list.h"
#include "tool/list/view_list.h"
#include "tool/text_table.h"
#include "workflow/published_names.h"
#include "workflow/session.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio list
  colorio list spaces --config show.ocio
  colorio list views --json
  colorio list spaces --inactive --config aces.ocio)";

constexpr char ALL[] = "all";

void print_roles(Console& console, bool) {
    TextTable table({"role", "colour space", "remark"});
    for (const PublishedRole& role : get_published_roles())
        table.add_row({role.role, role.color_space, role.is_in_config ? "" : "not in the configuration"});
    table.drop_empty_columns();
    table.print(console);
}

void add_roles_to_json(nlohmann::ordered_json& answer) {
    auto roles = nlohmann::ordered_json::object();
    auto from_config = nlohmann::ordered_json::object();
    for (const PublishedRole& role : get_published_roles()) {
        roles[role.role] = role.color_space;
        from_config[role.role] = role.is_in_config;
    }
    answer["roles"] = roles;
    answer["roles_in_config"] = from_config;
}

bool is_always_there() {
    return true;
}

/// One of the things that can be listed.
struct Topic {
    const char* name;
    void (*print)(Console& console, bool with_inactive);
    void (*add_to_json)(nlohmann::ordered_json& answer);
    bool (*is_there)() = is_always_there; ///< Else it is left out of the tables unless it was asked for.
};
constexpr Topic TOPICS[] = {
    {"spaces", print_spaces, add_spaces_to_json},
    {"named-transforms", print_named_transforms, add_named_transforms_to_json, has_named_transforms},
    {"views", print_views, add_views_to_json},
    {"roles", print_roles, add_roles_to_json},
    {"cdls", [](Console& console, bool) { print_cdls(console); },
     [](nlohmann::ordered_json& answer) { answer["cdls"] = cdls_to_json(); }},
};

class ListCommand : public Command {
public:
    explicit ListCommand(CLI::App& program)
        : Command(program, "list", "Show the colour spaces, named transforms, views, roles and CDLs in force",
                  EXAMPLES) {
        std::vector<std::string> names = {ALL};
        for (const Topic& topic : TOPICS)
            names.push_back(topic.name);
        options
            ->add_option("what", wanted,
                         "spaces, named-transforms, views, roles, cdls, or all of them (the default)")
            ->check(CLI::IsMember(names));
        add_session_options(*options, session_options);
        options->add_flag("--inactive", with_inactive,
                          "List what the configuration makes inactive, too; JSON always holds it");
        options->add_flag("--json", as_json, "Write JSON");
    }

    ExitCode run(Console& console) override {
        const ColorSession session(session_options, console);
        if (as_json)
            print_json(session, console);
        else
            print_tables(session, console);
        return EXIT_CODE_DONE;
    }

private:
    void print_tables(const ColorSession& session, Console& console) const {
        console.print(fmt::format("From {}.", session.get_source().describe()));
        for (const Topic& topic : TOPICS)
            if (wanted == topic.name || (wanted == ALL && topic.is_there())) {
                console.print("");
                topic.print(console, with_inactive);
            }
    }

    void print_json(const ColorSession& session, Console& console) const {
        nlohmann::ordered_json answer = {{"config", to_json(session.get_source())}};
        for (const Topic& topic : TOPICS)
            if (wanted == ALL || wanted == topic.name)
                topic.add_to_json(answer);
        console.print(format_json(answer));
    }

    SessionOptions session_options;
    std::string wanted = ALL;
    bool with_inactive = false;
    bool as_json = false;
};

} // namespace

std::unique_ptr<Command> make_list_command(CLI::App& program) {
    return std::make_unique<ListCommand>(program);
}

} // namespace tool
