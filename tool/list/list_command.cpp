#include "tool/command.h"

#include <functional>
#include <map>
#include <string>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tool/cdl/published_cdls.h"
#include "tool/color_session.h"
#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/published_names.h"
#include "tool/text_table.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio list
  colorio list spaces --config show.ocio
  colorio list views --json)";

constexpr char ALL[] = "all";

void print_spaces(Console& console) {
    TextTable table({"#", "colour space", "family", "label"});
    for (const PublishedSpace& space : get_published_spaces())
        table.add_row({std::to_string(table.count_rows()), space.name, space.family, space.label});
    table.print(console);
}

void print_views(Console& console) {
    TextTable table({"#", "view", "display", "view of the display", "colour space", ""});
    for (const PublishedView& view : get_published_views())
        table.add_row({std::to_string(table.count_rows()), view.label, view.display, view.view,
                       view.color_space, view.is_default ? "default" : ""});
    table.print(console);
}

void print_roles(Console& console) {
    TextTable table({"role", "colour space"});
    for (const PublishedRole& role : get_published_roles())
        table.add_row({role.role, role.color_space});
    table.print(console);
}

nlohmann::ordered_json spaces_to_json() {
    auto list = nlohmann::ordered_json::array();
    for (const PublishedSpace& space : get_published_spaces())
        list.push_back({{"position", list.size()},
                        {"name", space.name},
                        {"family", space.family},
                        {"label", space.label}});
    return list;
}

nlohmann::ordered_json views_to_json() {
    auto list = nlohmann::ordered_json::array();
    for (const PublishedView& view : get_published_views())
        list.push_back({{"position", list.size()},
                        {"label", view.label},
                        {"display", view.display},
                        {"view", view.view},
                        {"color_space", view.color_space},
                        {"default", view.is_default}});
    return list;
}

nlohmann::ordered_json roles_to_json() {
    auto roles = nlohmann::ordered_json::object();
    for (const PublishedRole& role : get_published_roles())
        roles[role.role] = role.color_space;
    return roles;
}

/// One of the lists that the module publishes.
struct Topic {
    const char* name;
    void (*print)(Console& console);
    nlohmann::ordered_json (*to_json)();
};
constexpr Topic TOPICS[] = {
    {"spaces", print_spaces, spaces_to_json},
    {"views", print_views, views_to_json},
    {"roles", print_roles, roles_to_json},
    {"cdls", print_cdls, cdls_to_json},
};

class ListCommand : public Command {
public:
    explicit ListCommand(CLI::App& program)
        : Command(program, "list", "Show the colour spaces, views, roles and CDLs that are published",
                  EXAMPLES) {
        std::vector<std::string> names = {ALL};
        for (const Topic& topic : TOPICS)
            names.push_back(topic.name);
        options->add_option("what", wanted, "spaces, views, roles, cdls, or all of them (the default)")
            ->check(CLI::IsMember(names));
        add_session_options(*options, session_options);
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
    bool is_topic_wanted(const Topic& topic) const { return wanted == ALL || wanted == topic.name; }

    void print_tables(const ColorSession& session, Console& console) const {
        console.print(fmt::format("From {}.", session.get_source().describe()));
        for (const Topic& topic : TOPICS)
            if (is_topic_wanted(topic)) {
                console.print("");
                topic.print(console);
            }
    }

    void print_json(const ColorSession& session, Console& console) const {
        nlohmann::ordered_json answer = {{"config", to_json(session.get_source())}};
        for (const Topic& topic : TOPICS)
            if (is_topic_wanted(topic))
                answer[topic.name] = topic.to_json();
        console.print(format_json(answer));
    }

    SessionOptions session_options;
    std::string wanted = ALL;
    bool as_json = false;
};

} // namespace

std::unique_ptr<Command> make_list_command(CLI::App& program) {
    return std::make_unique<ListCommand>(program);
}

} // namespace tool
