#include <string>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/settings/formats_command.h"
#include "tool/text_table.h"
#include "workflow/format_associations.h"
#include "workflow/session.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio formats list
  colorio formats list --json --config show.ocio)";

bool is_known(const FormatAssociation& association) {
    return ColorIO::color_space_exists(association.color_space.c_str());
}

class FormatsListCommand : public Command {
public:
    explicit FormatsListCommand(CLI::App& program)
        : Command(program, "list", "List the formats with their extensions and colour spaces", EXAMPLES) {
        add_session_options(*options, session_options);
        options->add_flag("--json", as_json, "Write JSON");
    }

    ExitCode run(Console& console) override {
        ColorSession session(session_options, console);
        warn_of_unused_mapping(session);
        if (as_json)
            print_json(console);
        else
            print_table(console);
        return EXIT_CODE_DONE;
    }

private:
    static void print_table(Console& console) {
        console.print(fmt::format("From {}.", describe_association_source()));
        console.print("");
        TextTable table({"#", "category", "extensions", "colour space", ""});
        for (const FormatAssociation& association : get_format_associations())
            table.add_row({std::to_string(table.count_rows()), association.category,
                           fmt::format("{}", fmt::join(association.extensions, ", ")),
                           association.color_space, is_known(association) ? "" : "unknown"});
        table.print(console);
    }

    static void print_json(Console& console) {
        auto list = nlohmann::ordered_json::array();
        for (const FormatAssociation& association : get_format_associations())
            list.push_back({{"position", list.size()},
                            {"category", association.category},
                            {"extensions", association.extensions},
                            {"color_space", association.color_space},
                            {"known", is_known(association)}});
        const bool from_file = ColorIOAutoDetection::get_instance()->is_file_config();
        console.print(format_json({{"source", from_file ? "file" : "builtin"}, {"formats", list}}));
    }

    SessionOptions session_options;
    bool as_json = false;
};

} // namespace

std::unique_ptr<Command> make_formats_list_command(CLI::App& program) {
    return std::make_unique<FormatsListCommand>(program);
}

} // namespace tool
