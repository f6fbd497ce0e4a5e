#include <string>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "tool/console.h"
#include "tool/formats_command.h"
#include "tool/json_output.h"
#include "tool/text_table.h"
#include "tool/tool_session.h"
#include "workflow/format_associations.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio formats list
  colorio formats list --json --config show.ocio)";

bool is_known(const workflow::FormatAssociation& association) {
    return ColorIO::color_space_exists(association.color_space.c_str());
}

class FormatsListCommand : public Command {
public:
    explicit FormatsListCommand(Options& program)
        : Command(program, "list", "List the formats and their color spaces", EXAMPLES) {
        add_session_options(options, session_options);
        options.add_flag("--json", as_json, "print JSON");
    }

    ExitCode run(Console& console) override {
        const ToolSession session(session_options, console);
        if (const auto warning = workflow::find_unused_mapping(session))
            console.report(*warning);
        if (as_json)
            print_json(console);
        else
            print_table(console);
        return EXIT_CODE_DONE;
    }

private:
    static void print_table(Console& console) {
        console.print(fmt::format("From {}.", workflow::describe_association_source()));
        console.print("");
        TextTable table({"#", "category", "extensions", "color space", ""});
        for (const workflow::FormatAssociation& association : workflow::get_format_associations())
            table.add_row({std::to_string(table.count_rows()), association.category,
                           fmt::format("{}", fmt::join(association.extensions, ", ")),
                           association.color_space, is_known(association) ? "" : "unknown"});
        table.print(console);
    }

    static void print_json(Console& console) {
        Json list = Json::array();
        for (const workflow::FormatAssociation& association : workflow::get_format_associations())
            list.push({{"position", list.size()},
                       {"category", association.category},
                       {"extensions", association.extensions},
                       {"color_space", association.color_space},
                       {"known", is_known(association)}});
        const bool from_file = ColorIOAutoDetection::get_instance()->is_file_config();
        console.print_text(Json({{"source", from_file ? "file" : "builtin"}, {"formats", list}}).format());
    }

    SessionChoice session_options;
    bool as_json = false;
};

} // namespace

std::unique_ptr<Command> make_formats_list_command(Options& program) {
    return std::make_unique<FormatsListCommand>(program);
}

} // namespace tool
