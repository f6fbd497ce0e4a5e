#include <filesystem>
#include <string>
#include <variant>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/published_rows.h"
#include "tool/report_command.h"
#include "workflow/custom_spaces.h"
#include "workflow/format_associations.h"
#include "workflow/preference_values.h"

namespace tool {

namespace {

using workflow::FormatAssociation;
using workflow::PreferenceValue;
using Space = ColorIOManager::ColorSpaceDef;

constexpr char EXAMPLES[] = R"(  colorio prefs show
  colorio prefs show --json --prefs show.yaml)";

RowModel<PreferenceValue> make_value_rows() {
    RowModel<PreferenceValue> rows;
    return rows.add("preference", nullptr, &PreferenceValue::name)
        .add("value", nullptr, workflow::format_preference);
}

RowModel<FormatAssociation> make_format_rows() {
    RowModel<FormatAssociation> rows;
    return rows.add("category", "category", &FormatAssociation::category)
        .add("extensions", "extensions", &FormatAssociation::extensions)
        .add("color space", "color_space", &FormatAssociation::color_space);
}

RowModel<Space> make_custom_rows() {
    RowModel<Space> rows;
    return rows.add("color space", "name", [](const Space& space) { return space.name.get_data(); })
        .add("made of", "made_of", workflow::describe_origin);
}

bool exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

std::string describe_file(const std::string& path) {
    if (path.empty())
        return "No preferences file; showing the defaults.";
    return exists(path) ? fmt::format("From {}.", path)
                        : fmt::format("{} does not exist; showing the defaults.", path);
}

class PrefsShowCommand : public ReportCommand {
public:
    explicit PrefsShowCommand(Options& program)
        : ReportCommand(program, "show", "Show the contents of the preferences file", EXAMPLES,
                        workflow::PreferenceUse::SHOW) {
        add_preference_reading_options();
        add_json_option();
    }

private:
    void print(const workflow::Session& session, Console& console) const override {
        const workflow::UserPreferences& preferences = session.get_preferences();
        console.print(describe_file(preferences.get_path()));
        for (const TextTable& table :
             {make_value_rows().make_table(workflow::get_preference_values(preferences.get_app())),
              make_format_rows().make_table(workflow::get_format_associations()),
              make_custom_rows().make_table(workflow::get_custom_spaces()),
              make_cdl_rows().make_table(workflow::get_published_cdls(session))}) {
            console.print("");
            table.print(console);
        }
    }

    Json to_json(const workflow::Session& session) const override {
        const workflow::UserPreferences& preferences = session.get_preferences();
        Json values = Json::object();
        for (const PreferenceValue& preference : workflow::get_preference_values(preferences.get_app()))
            std::visit([&](const auto& value) { values.set(preference.name, value); }, preference.value);
        return {{"path", preferences.get_path()},
                {"exists", exists(preferences.get_path())},
                {"preferences", values},
                {"formats", make_format_rows().make_array(workflow::get_format_associations())},
                {"spaces", make_custom_rows().make_array(workflow::get_custom_spaces())},
                {"cdls", make_cdl_rows().make_array(workflow::get_published_cdls(session))}};
    }
};

} // namespace

const MakeCommand make_prefs_show_command = make_command<PrefsShowCommand>;

} // namespace tool
