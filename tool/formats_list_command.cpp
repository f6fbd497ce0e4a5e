#include <string>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/report_command.h"
#include "tool/text_table.h"
#include "workflow/format_associations.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio formats list
  colorio formats list --json --config show.ocio)";

class FormatsListCommand : public ReportCommand {
public:
    explicit FormatsListCommand(Options& program)
        : ReportCommand(program, "list", "List the formats and their color spaces", EXAMPLES) {
        add_session_options(options, session_options);
        add_json_option();
    }

private:
    void report_problems(const workflow::Session& session, Console& console) const override {
        if (const auto warning = workflow::find_unused_mapping(session))
            console.report(*warning);
    }

    void print(const workflow::Session&, Console& console) const override {
        console.print(fmt::format("From {}.", workflow::describe_association_source()));
        console.print("");
        TextTable table({"#", "category", "extensions", "color space", ""});
        for (const workflow::FormatAssociation& association : workflow::get_format_associations())
            table.add_row({std::to_string(table.count_rows()), association.category,
                           join(association.extensions), association.color_space,
                           workflow::has_color_space(association) ? "" : "unknown"});
        table.print(console);
    }

    Json to_json(const workflow::Session&) const override {
        Json list = Json::array();
        for (const workflow::FormatAssociation& association : workflow::get_format_associations())
            list.push({{"position", list.size()},
                       {"category", association.category},
                       {"extensions", association.extensions},
                       {"color_space", association.color_space},
                       {"known", workflow::has_color_space(association)}});
        return {{"source", workflow::uses_mapping_file() ? "file" : "builtin"}, {"formats", list}};
    }
};

} // namespace

std::unique_ptr<Command> make_formats_list_command(Options& program) {
    return std::make_unique<FormatsListCommand>(program);
}

} // namespace tool
