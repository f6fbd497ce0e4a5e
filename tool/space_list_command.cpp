#include <string>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/space_command.h"
#include "tool/text_table.h"
#include "tool/tool_session.h"
#include "workflow/custom_spaces.h"

namespace tool {

namespace {

using ColorSpaceDef = ColorIOManager::ColorSpaceDef;

constexpr char EXAMPLES[] = R"(  colorio space list
  colorio space list --json --prefs show.yaml)";

/// False for records whose files are gone or have errors.
bool is_usable(const ColorSpaceDef& space) {
    return ColorIO::color_space_exists(workflow::get_label(space).c_str());
}

class SpaceListCommand : public Command {
public:
    explicit SpaceListCommand(Options& program)
        : Command(program, "list", "List the custom color spaces", EXAMPLES) {
        add_preference_reading_options(options, session_options);
        options.add_flag("--json", as_json, "print JSON");
        session_options.builtin_only = true;
    }

    ExitCode run(Console& console) override {
        const ToolSession session(session_options, console);
        if (as_json)
            print_json(console);
        else
            print_table(console);
        return EXIT_CODE_DONE;
    }

private:
    static void print_table(Console& console) {
        TextTable table({"color space", "made of", "depth", "allocation", ""});
        for (const ColorSpaceDef& space : workflow::get_custom_spaces())
            table.add_row({space.name.get_data(), workflow::describe_origin(space),
                           workflow::describe_depth(space), workflow::describe_allocation(space),
                           is_usable(space) ? "" : "unusable"});
        if (table.count_rows() == 0)
            console.print("No custom color spaces; 'colorio space add' adds one.");
        else
            table.print(console);
    }

    static void print_json(Console& console) {
        Json list = Json::array();
        for (const ColorSpaceDef& space : workflow::get_custom_spaces())
            list.push({{"name", space.name.view()},
                       {"lut", space.lut_file.view()},
                       {"cdl", space.cdl_file.view()},
                       {"cdl_id", space.cccid.view()},
                       {"depth", workflow::describe_depth(space)},
                       {"allocation", workflow::describe_allocation(space)},
                       {"usable", is_usable(space)}});
        console.print_text(Json({{"spaces", list}}).format());
    }

    SessionChoice session_options;
    bool as_json = false;
};

} // namespace

std::unique_ptr<Command> make_space_list_command(Options& program) {
    return std::make_unique<SpaceListCommand>(program);
}

} // namespace tool
