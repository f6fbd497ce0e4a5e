#include <string>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/report_command.h"
#include "tool/row_model.h"
#include "workflow/format_associations.h"

namespace tool {

namespace {

using workflow::FormatAssociation;

constexpr char EXAMPLES[] = R"(  colorio formats list
  colorio formats list --json --config show.ocio)";

RowModel<FormatAssociation> make_rows() {
    RowModel<FormatAssociation> rows(RowModel<FormatAssociation>::NUMBERED);
    return rows.add("category", "category", &FormatAssociation::category)
        .add("extensions", "extensions", &FormatAssociation::extensions)
        .add("color space", "color_space", &FormatAssociation::color_space)
        .add("", "known", [](const FormatAssociation& association) {
            const bool is_known = workflow::has_color_space(association);
            return Cell(is_known ? "" : "unknown", is_known);
        });
}

class FormatsListCommand : public ReportCommand {
public:
    explicit FormatsListCommand(Options& program)
        : ReportCommand(program, "list", "List the formats and their color spaces", EXAMPLES) {
        add_session_options();
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
        make_rows().make_table(workflow::get_format_associations()).print(console);
    }

    Json to_json(const workflow::Session&) const override {
        return {{"source", workflow::uses_mapping_file() ? "file" : "builtin"},
                {"formats", make_rows().make_array(workflow::get_format_associations())}};
    }
};

} // namespace

const MakeCommand make_formats_list_command = make_command<FormatsListCommand>;

} // namespace tool
