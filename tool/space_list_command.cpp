#include "tool/console.h"
#include "tool/report_command.h"
#include "tool/text_table.h"
#include "workflow/custom_spaces.h"

namespace tool {

namespace {

using ColorSpaceDef = ColorIOManager::ColorSpaceDef;

constexpr char EXAMPLES[] = R"(  colorio space list
  colorio space list --json --prefs show.yaml)";

class SpaceListCommand : public ReportCommand {
public:
    explicit SpaceListCommand(Options& program)
        : ReportCommand(program, "list", "List the custom color spaces", EXAMPLES) {
        add_preference_reading_options(options, session_options);
        add_json_option();
        session_options.builtin_only = true;
    }

private:
    void print(const workflow::Session&, Console& console) const override {
        TextTable table({"color space", "made of", "depth", "allocation", ""});
        for (const ColorSpaceDef& space : workflow::get_custom_spaces())
            table.add_row({space.name.get_data(), workflow::describe_origin(space),
                           workflow::describe_depth(space), workflow::describe_allocation(space),
                           workflow::is_usable(space) ? "" : "unusable"});
        if (table.count_rows() == 0)
            console.print("No custom color spaces; 'colorio space add' adds one.");
        else
            table.print(console);
    }

    Json to_json(const workflow::Session&) const override {
        Json list = Json::array();
        for (const ColorSpaceDef& space : workflow::get_custom_spaces())
            list.push({{"name", space.name.view()},
                       {"lut", space.lut_file.view()},
                       {"cdl", space.cdl_file.view()},
                       {"cdl_id", space.cccid.view()},
                       {"depth", workflow::describe_depth(space)},
                       {"allocation", workflow::describe_allocation(space)},
                       {"usable", workflow::is_usable(space)}});
        return {{"spaces", list}};
    }
};

} // namespace

std::unique_ptr<Command> make_space_list_command(Options& program) {
    return std::make_unique<SpaceListCommand>(program);
}

} // namespace tool
