#include <string>

#include "tool/console.h"
#include "tool/report_command.h"
#include "tool/text_table.h"
#include "workflow/legacy_names.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio legacy linear
  colorio legacy "Default|sRGB" --json)";

std::string or_none(const std::string& text) {
    return text.empty() ? "(none)" : text;
}

class LegacyCommand : public ReportCommand {
public:
    explicit LegacyCommand(Options& program)
        : ReportCommand(program, "legacy",
                        "Show the current equivalent of a color space name saved by an earlier version",
                        EXAMPLES) {
        options.add("name", name, "saved name of a color space").required();
        add_session_options();
        add_json_option();
    }

private:
    void print(const workflow::Session&, Console& console) const override {
        const workflow::LegacyNames current = workflow::find_legacy_names(name);
        TextTable table({name, ""});
        table.add_row({"former built-in color space", current.is_legacy ? "yes" : "no"});
        table.add_row({"as a color space", or_none(current.color_space)});
        table.add_row({"as a view saved in the preferences", or_none(current.view_of_preferences)});
        table.add_row({"as a view saved by a widget", or_none(current.view_of_widget)});
        table.print(console);
    }

    Json to_json(const workflow::Session&) const override {
        const workflow::LegacyNames current = workflow::find_legacy_names(name);
        return {{"name", name},
                {"legacy", current.is_legacy},
                {"color_space", current.color_space},
                {"preferences_view", current.view_of_preferences},
                {"widget_view", current.view_of_widget}};
    }

    std::string name;
};

} // namespace

const MakeCommand make_legacy_command = make_command<LegacyCommand>;

} // namespace tool
