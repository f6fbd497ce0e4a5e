#include "tool/console.h"
#include "tool/report_command.h"
#include "tool/row_model.h"
#include "workflow/custom_spaces.h"

namespace tool {

namespace {

using Space = ColorIOManager::ColorSpaceDef;

constexpr char EXAMPLES[] = R"(  colorio space list
  colorio space list --json --prefs show.yaml)";

RowModel<Space> make_rows() {
    RowModel<Space> rows;
    return rows.add("color space", "name", [](const Space& space) { return space.name.get_data(); })
        .add("made of", nullptr, workflow::describe_origin)
        .add(nullptr, "lut", [](const Space& space) { return space.lut_file.get_data(); })
        .add(nullptr, "cdl", [](const Space& space) { return space.cdl_file.get_data(); })
        .add(nullptr, "cdl_id", [](const Space& space) { return space.cccid.get_data(); })
        .add("depth", "depth", workflow::describe_depth)
        .add("allocation", "allocation", workflow::describe_allocation)
        .add("", "usable", [](const Space& space) {
            const bool is_usable = workflow::is_usable(space);
            return Cell(is_usable ? "" : "unusable", is_usable);
        });
}

class SpaceListCommand : public ReportCommand {
public:
    explicit SpaceListCommand(Options& program)
        : ReportCommand(program, "list", "List the custom color spaces", EXAMPLES) {
        add_preference_reading_options();
        add_json_option();
    }

private:
    void print(const workflow::Session&, Console& console) const override {
        const TextTable table = make_rows().make_table(workflow::get_custom_spaces());
        if (table.count_rows() == 0)
            console.print("No custom color spaces; 'colorio space add' adds one.");
        else
            table.print(console);
    }

    Json to_json(const workflow::Session&) const override {
        return {{"spaces", make_rows().make_array(workflow::get_custom_spaces())}};
    }
};

} // namespace

const MakeCommand make_space_list_command = make_command<SpaceListCommand>;

} // namespace tool
